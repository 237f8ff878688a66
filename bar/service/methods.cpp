#include <QImage>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cmath>

#include "bar/service/menu_bar_service.h"
#include "common/barprotocol/wire.h"

namespace tarnwick::bar {

namespace {

constexpr int maximumText = 1'000;        // characters
constexpr quint32 maximumRender = 2'048;  // pixels of a side
constexpr double farthestPoint = 1e6;     // points

QString kindName(ItemKind kind) {
  switch (kind) {
    case ItemKind::sni:
      return QStringLiteral("sni");
    case ItemKind::xembed:
      return QStringLiteral("xembed");
    case ItemKind::native:
      break;
  }
  return QStringLiteral("native");
}

bool isNear(double coordinate) {
  return std::isfinite(coordinate) && std::abs(coordinate) <= farthestPoint;
}

}  // namespace

void MenuBarService::items(const QDBusMessage& message, qint32) {
  // Ids grow with registration, so that sorting by id gives the list's order.
  auto frames = board_.row().frames();
  std::sort(frames.begin(), frames.end(),
            [](const auto& one, const auto& other) { return one.first < other.first; });
  auto frame = frames.begin();
  QList<WireItem> list;
  for (const ItemId id : board_.listed()) {
    while (frame != frames.end() && frame->first < id) ++frame;
    if (frame == frames.end() || frame->first != id) continue;
    const ItemRecord record = board_.item(id)->record();
    const Rect& rect = frame->second;
    list.append({id, record.pid, kindName(record.kind), record.hint.left(maximumText),
                 record.title.left(maximumText), QRectF(rect.x, rect.y, rect.width, rect.height),
                 record.busName, record.objectPath, record.menuPath});
  }
  reply(message, {QVariant::fromValue(list)});
}

void MenuBarService::press(const QDBusMessage& message, qint32) {
  const ItemId id = message.arguments()[0].toULongLong();
  Item* const item = board_.item(id);
  if (!item) return noSuchItem(message);
  // What the item opens is to be seen, wherever it stands itself.
  QPointF anchor = board_.anchor(id);
  anchor.setX(std::clamp(anchor.x(), frame_.left(), frame_.right()));
  pressWhenFree(id, &Item::press, anchor);
  reply(message);
}

void MenuBarService::pressAt(const QDBusMessage& message, qint32) {
  const ItemId id = message.arguments()[0].toULongLong();
  if (!board_.item(id)) return noSuchItem(message);
  const auto point = qdbus_cast<QPointF>(message.arguments()[1]);
  if (!std::isfinite(point.x()) || !std::isfinite(point.y())) {
    return invalid(message, QStringLiteral("A point is two finite numbers"));
  }
  // Owners show things at their icon, and icons stand in the bar.
  pressWhenFree(id, &Item::activate,
                {std::clamp(point.x(), frame_.left(), frame_.right()),
                 std::clamp(point.y(), frame_.top(), frame_.bottom())});
  reply(message);
}

// Toolkits take the release of a press that their menu has come up under for a choice.
void MenuBarService::pressWhenFree(ItemId id, void (Item::*action)(QPointF), QPointF anchor) {
  waiting_ = id;
  hand_.whenFree([this, id, action, anchor] {
    if (Item* const item = board_.item(id)) (item->*action)(anchor);
  });
}

void MenuBarService::cancel(const QDBusMessage& message, qint32) {
  const ItemId id = message.arguments()[0].toULongLong();
  Item* const item = board_.item(id);
  if (!item) return noSuchItem(message);
  if (id == waiting_) hand_.forget();
  item->cancelPress();
  reply(message);
}

void MenuBarService::render(const QDBusMessage& message, qint32) {
  const QVariantList arguments = message.arguments();
  const ItemId id = arguments[0].toULongLong();
  const quint32 width = arguments[1].toUInt();
  const quint32 height = arguments[2].toUInt();
  Item* const item = board_.item(id);
  const auto frame = board_.row().frame(id);
  if (!item || !frame) return noSuchItem(message);
  if (width == 0 || height == 0 || width > maximumRender || height > maximumRender ||
      frame->height <= 0) {
    return invalid(message, QStringLiteral("Sides are 1 to %1 pixels").arg(maximumRender));
  }
  if (item->isFresh() && !item->hasPicture()) {
    return fail(message, QStringLiteral("org.tarnwick.MenuBar1.Error.NoPicture"),
                QStringLiteral("The item's icon is not there yet"));
  }
  const double scale = height / frame->height;
  QImage image(static_cast<int>(width), static_cast<int>(height),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  image.setDevicePixelRatio(scale);
  {
    QPainter painter(&image);
    item->paint(painter, QRectF(0, 0, width / scale, frame->height), scale,
                appearance_.foreground());
  }
  image = std::move(image).convertToFormat(QImage::Format_RGBA8888_Premultiplied);
  const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
  reply(message, {QVariant::fromValue(WireImage{width, height, bytes})});
}

void MenuBarService::addItem(const QDBusMessage& message, qint32 pid) {
  const QVariantList arguments = message.arguments();
  const auto added =
      native_.add(message.service(), pid, arguments[0].toString(), arguments[1].toDouble());
  if (const ItemId* const id = std::get_if<ItemId>(&added)) {
    reply(message, {QVariant::fromValue<qulonglong>(*id)});
  } else {
    finish(message, std::get<NativeItems::Error>(added));
  }
}

void MenuBarService::setLength(const QDBusMessage& message, qint32) {
  const QVariantList arguments = message.arguments();
  finish(message,
         native_.setLength(message.service(), arguments[0].toULongLong(), arguments[1].toDouble()));
}

void MenuBarService::placeLeftOf(const QDBusMessage& message, qint32) {
  const QVariantList arguments = message.arguments();
  finish(message, native_.placeLeftOf(message.service(), arguments[0].toULongLong(),
                                      arguments[1].toULongLong()));
}

void MenuBarService::removeItem(const QDBusMessage& message, qint32) {
  finish(message, native_.remove(message.service(), message.arguments()[0].toULongLong()));
}

void MenuBarService::ownFrame(const QDBusMessage& message, qint32) {
  const ItemId id = message.arguments()[0].toULongLong();
  const auto frame = board_.row().frame(id);
  if (!frame || !native_.owns(message.service(), id)) return noSuchItem(message);
  reply(message, {QRectF(frame->x, frame->y, frame->width, frame->height)});
}

void MenuBarService::setImage(const QDBusMessage& message, qint32) {
  const QVariantList arguments = message.arguments();
  finish(message, native_.setImage(message.service(), arguments[0].toULongLong(),
                                   qdbus_cast<QSizeF>(arguments[1]), arguments[2].toUInt(),
                                   arguments[3].toUInt(), arguments[4].toByteArray(),
                                   arguments[5].toBool()));
}

void MenuBarService::postPointerEvent(const QDBusMessage& message, qint32 pid) {
  const QVariantList arguments = message.arguments();
  const quint32 type = arguments[0].toUInt();
  const auto point = qdbus_cast<QPointF>(arguments[1]);
  if (type < 1 || type > 3 || !isNear(point.x()) || !isNear(point.y())) {
    return invalid(message, QStringLiteral("No such event"));
  }
  reply(message);
  if (!access_.allows(pid, Capability::accessibility)) return;
  const QString sender = message.service();
  if (type == 1) {
    if (board_.isHeldByPoster() && poster_ != sender) return;
    poster_ = sender;
  } else if (poster_ != sender) {
    return;
  }
  constexpr Board::Phase phases[] = {Board::Phase::press, Board::Phase::drag,
                                     Board::Phase::release};
  board_.leftButton(Board::Hand::posted, phases[type - 1], point, arguments[2].toUInt());
  if (type == 3) poster_.clear();
}

void MenuBarService::hasAccess(const QDBusMessage& message, qint32 pid) {
  const auto capability = capabilityOf(message.arguments()[0].toString());
  if (!capability) return invalid(message, QStringLiteral("No such capability"));
  reply(message, {access_.allows(pid, *capability)});
}

void MenuBarService::requestAccess(const QDBusMessage& message, qint32 pid) {
  const auto capability = capabilityOf(message.arguments()[0].toString());
  if (!capability) return invalid(message, QStringLiteral("No such capability"));
  access_.request(message.service(), pid, *capability,
                  [self = QPointer(this), message](bool granted) {
                    if (self) self->reply(message, {granted});
                  });
}

void MenuBarService::showPane(const QDBusMessage& message, qint32) {
  const QString pane = message.arguments()[0].toString();
  if (pane != QLatin1String("privacy") && pane != QLatin1String("menu-bar")) {
    return invalid(message, QStringLiteral("Panes are \"privacy\" and \"menu-bar\""));
  }
  reply(message);
  emit paneRequested(pane, message.service());
}

}  // namespace tarnwick::bar
