#include "bar/board/board.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::bar {

namespace {

constexpr double maximumLength = 100'000;  // points
constexpr qint64 posterSilenceMs = 1'000;
constexpr qint64 posterHoldMs = 5'000;
constexpr int itemsSpacingMs = 33;

double sane(double length) {
  return std::isfinite(length) ? std::clamp(length, 0.0, maximumLength) : 0.0;
}

QRectF toQt(const Rect& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

constexpr std::pair<Qt::KeyboardModifier, std::uint32_t> modifierBits[] = {
    {Qt::ShiftModifier, 1}, {Qt::ControlModifier, 2}, {Qt::AltModifier, 4}, {Qt::MetaModifier, 8}};

}  // namespace

Board::Board(QObject* parent) : QObject(parent) {
  itemsSpacing_.setSingleShot(true);
  itemsSpacing_.setTimerType(Qt::PreciseTimer);
  itemsSpacing_.setInterval(itemsSpacingMs);
  itemsSpacing_.callOnTimeout(this, [this] {
    if (itemsChangedLater_) announceItems();
  });
}

Board::~Board() = default;

ItemId Board::add(std::unique_ptr<Item> item) {
  const ItemId id = nextId_++;
  Item* const added = item.get();
  const ItemRecord record = added->record();
  Entry& entry = items_[id];
  entry.item = std::move(item);
  entry.kind = record.kind;
  entry.pid = record.pid;
  entry.length = sane(added->length());
  connect(added, &Item::lengthChanged, this, [this, id] { updateLength(id); });
  connect(added, &Item::recordChanged, this, [this, id] { updateRecord(id); });
  connect(added, &Item::contentChanged, this, [this, id] { emit repaintNeeded(id); });
  entry.twin = isTwin(entry);
  // Before it takes its place: a twin that leaves may have stood there under the same key.
  updateTwins();
  if (!entry.twin) putIntoRow(id, entry);
  rowChanged(true);
  emit itemAdded(id);
  return id;
}

void Board::remove(ItemId id) {
  const auto found = items_.find(id);
  if (found == items_.end()) return;
  // The item may be the caller: it lives until the loop turns.
  Item* const item = found->second.item.release();
  const qint32 pid = found->second.pid;
  items_.erase(found);
  item->disconnect(this);
  item->deleteLater();
  std::erase_if(waitingPlaces_, [id](const auto& wish) { return wish.first == id; });
  apply(pointer_.forget(id));
  const std::string vacated = row_.key(id);
  row_.remove(id);
  const bool last = std::none_of(items_.begin(), items_.end(),
                                 [pid](const auto& other) { return other.second.pid == pid; });
  if (last) appeared_.erase(pid);
  updateTwins(vacated);
  rowChanged(true);
  emit itemRemoved(id);
}

Item* Board::item(ItemId id) const {
  const auto found = items_.find(id);
  return found == items_.end() ? nullptr : found->second.item.get();
}

std::vector<ItemId> Board::listed() const {
  std::vector<ItemId> ids;
  ids.reserve(items_.size());
  for (const auto& [id, entry] : items_) {
    if (isListed(entry)) ids.push_back(id);
  }
  return ids;
}

QPointF Board::anchor(ItemId id) const {
  const Rect frame = row_.frame(id).value_or(Rect{});
  return {frame.x, frame.maxY()};
}

void Board::setBounds(double right, double height) {
  row_.setBounds(right, height);
  rowChanged(false);
}

void Board::placeLeftOf(ItemId id, ItemId sibling) {
  std::erase_if(waitingPlaces_, [id](const auto& wish) { return wish.first == id; });
  waitingPlaces_.emplace_back(id, sibling);
  if (!isHeld()) apply(pointer_.cancel());
}

void Board::placeWaiting() {
  bool moved = false;
  for (const auto& [id, sibling] : std::exchange(waitingPlaces_, {})) {
    moved = row_.placeLeftOf(id, sibling) || moved;
  }
  if (!moved) return;
  scheduleFlush(true, false);
  emit orderChanged();
}

void Board::leftButton(Hand hand, Phase phase, QPointF at, std::uint32_t modifiers) {
  const Point point{at.x(), at.y()};
  RowPointer::Outcome outcome;
  if (phase == Phase::press) {
    if (isHeld() && hand_ != hand) return;
    outcome = pointer_.press(point, modifiers, hand);
    hand_ = hand;
  } else {
    if (hand_ != hand) return;
    if (phase == Phase::drag) {
      outcome = pointer_.drag(point);
    } else {
      outcome = phase == Phase::release ? pointer_.release(point) : pointer_.cancel();
    }
  }
  if (hand == Hand::posted) {
    lastPosted_.start();
    if (phase == Phase::press) heldSince_.start();
  }
  apply(outcome, at, modifiers);
}

bool Board::isHeldByPoster() const {
  return hand_ == Hand::posted && !lastPosted_.hasExpired(posterSilenceMs) &&
         !heldSince_.hasExpired(posterHoldMs);
}

void Board::apply(const RowPointer::Outcome& outcome, QPointF at, std::uint32_t modifiers) {
  if (outcome.layoutChanged) scheduleFlush(true, false);
  if (outcome.orderSettled) emit orderChanged();
  if (!pointer_.isPressed()) {
    hand_.reset();
    placeWaiting();
  }
  if (!outcome.clickedItem) return;
  if (Item* const clicked = item(*outcome.clickedItem)) {
    clicked->clicked(Qt::LeftButton, toQtModifiers(modifiers), at, anchor(*outcome.clickedItem));
  }
}

bool Board::isListed(const Entry& entry) const {
  return !entry.twin && (entry.length > 0 || entry.kind == ItemKind::native);
}

bool Board::isTwin(const Entry& entry) const {
  return entry.kind == ItemKind::xembed && entry.pid != 0 &&
         std::any_of(items_.begin(), items_.end(), [&entry](const auto& other) {
           return other.second.kind == ItemKind::sni && other.second.pid == entry.pid;
         });
}

void Board::putIntoRow(ItemId id, Entry& entry) {
  row_.insert(id, entry.item->key().toStdString(),
              entry.kind == ItemKind::native ? Placement::leftmost : Placement::rightmost,
              entry.length);
}

void Board::updateTwins(const std::string& vacated) {
  std::vector<std::pair<ItemId, Entry*>> embedded;
  for (auto& [id, entry] : items_) {
    if (entry.kind == ItemKind::xembed) embedded.emplace_back(id, &entry);
  }
  for (auto& [id, entry] : embedded) {
    const bool twin = isTwin(*entry);
    if (twin == entry->twin) continue;
    entry->twin = twin;
    if (twin) {
      apply(pointer_.forget(id));
      row_.remove(id);
      entry->item->placed({});
    } else {
      putIntoRow(id, *entry);
      row_.placeAt(id, vacated);
    }
    entry->cell = {};
    rowChanged(true);
  }
}

void Board::updateLength(ItemId id) {
  const auto found = items_.find(id);
  if (found == items_.end()) return;
  Entry& entry = found->second;
  const double length = sane(entry.item->length());
  if (length == entry.length) return;
  const bool wasListed = isListed(entry);
  entry.length = length;
  row_.setLength(id, length);
  rowChanged(wasListed != isListed(entry));
}

void Board::updateRecord(ItemId id) {
  const auto found = items_.find(id);
  if (found == items_.end()) return;
  const qint32 pid = found->second.item->record().pid;
  if (pid != found->second.pid) {
    found->second.pid = pid;
    updateTwins();
  }
  scheduleFlush(false, true);
}

// By anything but the pointer.
void Board::rowChanged(bool items) {
  apply(pointer_.rowChanged());
  scheduleFlush(true, items);
}

void Board::scheduleFlush(bool layout, bool items) {
  layoutPending_ = layoutPending_ || layout;
  itemsPending_ = itemsPending_ || items;
  if (flushPending_) return;
  flushPending_ = true;
  QMetaObject::invokeMethod(this, &Board::flush, Qt::QueuedConnection);
}

void Board::flush() {
  flushPending_ = false;
  const bool layout = std::exchange(layoutPending_, false);
  bool items = std::exchange(itemsPending_, false);
  if (layout) {
    for (const auto& [id, cell] : row_.frames()) {
      const auto found = items_.find(id);
      if (found == items_.end() || cell == found->second.cell) continue;
      found->second.cell = cell;
      items = true;
      found->second.item->placed(cell.width > 0 ? toQt(cell) : QRectF());
      if (cell.width > 0 && !std::exchange(found->second.shown, true)) {
        found->second.item->appeared();
      }
    }
    emit layoutChanged();
  }
  if (!items) return;
  const auto fresh = freshApplications();
  if (itemsSpacing_.isActive() && fresh.empty()) {
    itemsChangedLater_ = true;
    return;
  }
  announceItems();
  for (const qint32 pid : fresh) emit applicationAppeared(pid);
}

void Board::announceItems() {
  itemsChangedLater_ = false;
  itemsSpacing_.start();
  emit itemsChanged();
}

std::vector<qint32> Board::freshApplications() {
  std::vector<qint32> fresh;
  for (const auto& [id, entry] : items_) {
    if (entry.pid != 0 && isListed(entry) && appeared_.insert(entry.pid).second) {
      fresh.push_back(entry.pid);
    }
  }
  return fresh;
}

Qt::KeyboardModifiers toQtModifiers(std::uint32_t modifiers) {
  Qt::KeyboardModifiers result;
  for (const auto& [qt, bit] : modifierBits) result.setFlag(qt, (modifiers & bit) != 0);
  return result;
}

std::uint32_t fromQtModifiers(Qt::KeyboardModifiers modifiers) {
  std::uint32_t result = 0;
  for (const auto& [qt, bit] : modifierBits) result |= modifiers.testFlag(qt) ? bit : 0;
  return result;
}

}  // namespace tarnwick::bar
