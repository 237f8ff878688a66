#include "bar/native/native_items.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace tarnwick::bar {

namespace {

bool isLength(double points) {
  return std::isfinite(points) && points >= 0 && points <= NativeItems::maximumLength;
}

}  // namespace

NativeItems::NativeItems(Board& board, QObject* parent) : QObject(parent), board_(board) {}

std::variant<ItemId, NativeItems::Error> NativeItems::add(const QString& owner, qint32 pid,
                                                          const QString& autosaveName,
                                                          double length) {
  if (autosaveName.isEmpty() || autosaveName.size() > maximumNameLength || !isLength(length)) {
    return Error::invalid;
  }
  const auto owned = std::count_if(items_.begin(), items_.end(),
                                   [&](const auto& item) { return item.second->owner() == owner; });
  if (owned >= maximumPerOwner) return Error::limit;
  auto item = std::make_unique<NativeItem>(owner, pid, autosaveName, length);
  NativeItem* const added = item.get();
  const ItemId id = board_.add(std::move(item));
  items_[id] = added;
  connect(added, &NativeItem::ownerClicked, this,
          [this, owner, id](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF at) {
            emit clicked(owner, id, button, modifiers, at);
          });
  return id;
}

NativeItems::Error NativeItems::setLength(const QString& owner, ItemId id, double length) {
  NativeItem* const item = find(owner, id);
  if (!item) return Error::noSuchItem;
  if (!isLength(length)) return Error::invalid;
  item->setLength(length);
  return Error::none;
}

NativeItems::Error NativeItems::setImage(const QString& owner, ItemId id, QSizeF points,
                                         quint32 width, quint32 height, const QByteArray& rgba,
                                         bool isTemplate) {
  NativeItem* const item = find(owner, id);
  if (!item) return Error::noSuchItem;
  if (width > maximumImageSide || height > maximumImageSide ||
      quint64{width} * height * 4 != static_cast<quint64>(rgba.size())) {
    return Error::invalid;
  }
  if (rgba.isEmpty()) {
    item->setImage({});
    return Error::none;
  }
  if (!isLength(points.width()) || !isLength(points.height()) || points.isEmpty()) {
    return Error::invalid;
  }
  const QImage pixels(reinterpret_cast<const uchar*>(rgba.constData()), static_cast<int>(width),
                      static_cast<int>(height), static_cast<qsizetype>(width) * 4,
                      QImage::Format_RGBA8888_Premultiplied);
  item->setImage({points, pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied), isTemplate});
  return Error::none;
}

NativeItems::Error NativeItems::placeLeftOf(const QString& owner, ItemId id, ItemId sibling) {
  if (!find(owner, id) || !find(owner, sibling)) return Error::noSuchItem;
  if (id == sibling) return Error::invalid;
  board_.placeLeftOf(id, sibling);
  return Error::none;
}

NativeItems::Error NativeItems::remove(const QString& owner, ItemId id) {
  if (!find(owner, id)) return Error::noSuchItem;
  items_.erase(id);
  board_.remove(id);
  return Error::none;
}

void NativeItems::dropOwner(const QString& owner) {
  std::vector<ItemId> gone;
  for (const auto& [id, item] : items_) {
    if (item->owner() == owner) gone.push_back(id);
  }
  for (const ItemId id : gone) remove(owner, id);
}

NativeItem* NativeItems::find(const QString& owner, ItemId id) const {
  const auto found = items_.find(id);
  return found == items_.end() || found->second->owner() != owner ? nullptr : found->second;
}

}  // namespace tarnwick::bar
