#include "bar/row/item_row.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tarnwick::bar {

namespace {

// Native items have one in common.
std::string_view applicationOf(std::string_view key) {
  return key.substr(0, key.find_first_of("/:"));
}

// Which copy of `key` another key names: 1 for itself, n for "key#n", 0 for none.
std::size_t copyOf(std::string_view key, std::string_view other) {
  if (!other.starts_with(key)) return 0;
  other.remove_prefix(key.size());
  if (other.empty()) return 1;
  if (other.size() < 2 || other[0] != '#' || other[1] == '0') return 0;
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(other.data() + 1, other.data() + other.size(), number);
  return error == std::errc() && end == other.data() + other.size() && number > 1 ? number : 0;
}

}  // namespace

void ItemRow::setBounds(double right, double height) {
  right_ = right;
  height_ = height;
  layOut();
}

void ItemRow::restoreOrder(std::vector<std::string> keys) {
  if (keys.size() > maximumKeys) keys.resize(maximumKeys);
  slots_.clear();
  for (auto& key : keys) {
    const bool known = std::any_of(slots_.begin(), slots_.end(),
                                   [&](const Slot& slot) { return slot.key == key; });
    if (!known && !key.empty()) slots_.push_back({std::move(key), 0, 0, 0});
  }
}

std::vector<std::string> ItemRow::rememberedOrder() const {
  std::vector<std::string> keys;
  keys.reserve(slots_.size());
  for (const Slot& slot : slots_) keys.push_back(slot.key);
  return keys;
}

void ItemRow::insert(ItemId id, const std::string& key, Placement placement, double length) {
  if (contains(id)) return;
  const auto slot = slotFor(key, placement);
  slot->id = id;
  slot->length = length;
  layOut();
}

// The place of the first copy of the key that no present item has, made if need be.
ItemRow::Place ItemRow::slotFor(const std::string& key, Placement placement) {
  std::map<std::size_t, Place> copies;
  for (auto slot = slots_.begin(); slot != slots_.end(); ++slot) {
    if (const std::size_t number = copyOf(key, slot->key)) copies.emplace(number, slot);
  }
  std::size_t free = 1;
  for (const auto& [number, slot] : copies) {
    if (number != free) break;
    if (slot->id == 0) return slot;
    ++free;
  }
  if (slots_.size() >= maximumKeys) dropAbsent(applicationOf(key));
  const auto place = placement == Placement::leftmost ? slots_.begin() : slots_.end();
  const std::string copy = free == 1 ? key : key + "#" + std::to_string(free);
  return slots_.insert(place, {copy, 0, 0, 0});
}

void ItemRow::dropAbsent(std::string_view application) {
  auto absent = std::find_if(slots_.begin(), slots_.end(), [&](const Slot& slot) {
    return slot.id == 0 && applicationOf(slot.key) == application;
  });
  if (absent == slots_.end()) {
    absent =
        std::find_if(slots_.begin(), slots_.end(), [](const Slot& slot) { return slot.id == 0; });
  }
  if (absent != slots_.end()) slots_.erase(absent);
}

void ItemRow::remove(ItemId id) {
  const auto slot = find(id);
  if (slot == slots_.end()) return;
  slot->id = 0;
  slot->length = 0;
  layOut();
}

void ItemRow::setLength(ItemId id, double length) {
  const auto slot = find(id);
  if (slot == slots_.end() || slot->length == length) return;
  slot->length = length;
  layOut();
}

bool ItemRow::contains(ItemId id) const {
  return find(id) != slots_.end();
}

std::string ItemRow::key(ItemId id) const {
  const auto slot = find(id);
  return slot == slots_.end() ? std::string() : slot->key;
}

double ItemRow::length(ItemId id) const {
  const auto slot = find(id);
  return slot == slots_.end() ? 0 : slot->length;
}

std::optional<Rect> ItemRow::frame(ItemId id) const {
  const auto slot = find(id);
  if (slot == slots_.end()) return std::nullopt;
  return Rect{slot->x, 0, slot->length, height_};
}

std::optional<ItemId> ItemRow::itemAt(Point point) const {
  for (const Slot& slot : slots_) {
    if (slot.id != 0 && Rect{slot.x, 0, slot.length, height_}.contains(point)) return slot.id;
  }
  return std::nullopt;
}

std::vector<ItemId> ItemRow::order() const {
  std::vector<ItemId> ids;
  for (const Slot& slot : slots_) {
    if (slot.id != 0) ids.push_back(slot.id);
  }
  return ids;
}

std::vector<std::pair<ItemId, Rect>> ItemRow::frames() const {
  std::vector<std::pair<ItemId, Rect>> frames;
  for (const Slot& slot : slots_) {
    if (slot.id != 0) frames.emplace_back(slot.id, Rect{slot.x, 0, slot.length, height_});
  }
  return frames;
}

double ItemRow::left() const {
  for (const Slot& slot : slots_) {
    if (slot.id != 0) return slot.x;
  }
  return right_;
}

void ItemRow::moveLeft(ItemId id) {
  const auto slot = find(id);
  auto neighbour = slot;
  while (neighbour != slots_.begin()) {
    --neighbour;
    if (neighbour->id == 0) continue;
    std::rotate(neighbour, slot, slot + 1);
    layOut();
    return;
  }
}

void ItemRow::moveRight(ItemId id) {
  const auto slot = find(id);
  if (slot == slots_.end()) return;
  const auto neighbour =
      std::find_if(slot + 1, slots_.end(), [](const Slot& other) { return other.id != 0; });
  if (neighbour == slots_.end()) return;
  std::rotate(slot, slot + 1, neighbour + 1);
  layOut();
}

void ItemRow::moveTo(ItemId id, std::size_t index) {
  const auto place = [&] {
    const auto ids = order();
    return static_cast<std::size_t>(std::find(ids.begin(), ids.end(), id) - ids.begin());
  };
  if (!contains(id)) return;
  const std::size_t target = std::min(index, order().size() - 1);
  while (place() > target) moveLeft(id);
  while (place() < target) moveRight(id);
}

bool ItemRow::placeLeftOf(ItemId id, ItemId sibling) {
  return moveBefore(find(id), find(sibling));
}

void ItemRow::placeAt(ItemId id, const std::string& key) {
  moveBefore(find(id), std::find_if(slots_.begin(), slots_.end(),
                                    [&](const Slot& slot) { return slot.key == key; }));
}

bool ItemRow::moveBefore(Place slot, Place place) {
  const bool known = slot != slots_.end() && place != slots_.end();
  if (!known || slot == place || slot + 1 == place) return false;
  if (slot < place) {
    std::rotate(slot, slot + 1, place);
  } else {
    std::rotate(place, slot, slot + 1);
  }
  layOut();
  return true;
}

void ItemRow::restorePlace(ItemId id, const std::vector<std::string>& order) {
  const auto slot = find(id);
  if (slot == slots_.end()) return;
  const auto place = std::find(order.begin(), order.end(), slot->key);
  if (place == order.end()) return;
  const Slot moved = *slot;
  slots_.erase(slot);
  std::unordered_map<std::string_view, std::size_t> present;
  for (std::size_t i = 0; i < slots_.size(); ++i) present.emplace(slots_[i].key, i);
  // Behind the nearest key before it that is still known, else before the nearest after it.
  std::size_t target = slots_.size();
  const auto known = [&](const std::string& key) { return present.count(key) != 0; };
  const auto before = std::find_if(std::make_reverse_iterator(place), order.rend(), known);
  if (before != order.rend()) {
    target = present[*before] + 1;
  } else if (const auto after = std::find_if(place + 1, order.end(), known); after != order.end()) {
    target = present[*after];
  }
  slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(target), moved);
  layOut();
}

// 0 marks absent slots, so that no item has it.
ItemRow::Place ItemRow::find(ItemId id) {
  return id == 0 ? slots_.end()
                 : std::find_if(slots_.begin(), slots_.end(),
                                [id](const Slot& slot) { return slot.id == id; });
}

std::vector<ItemRow::Slot>::const_iterator ItemRow::find(ItemId id) const {
  return id == 0 ? slots_.end()
                 : std::find_if(slots_.begin(), slots_.end(),
                                [id](const Slot& slot) { return slot.id == id; });
}

void ItemRow::layOut() {
  double x = right_;
  for (auto slot = slots_.rbegin(); slot != slots_.rend(); ++slot) {
    if (slot->id == 0) continue;
    x -= slot->length;
    slot->x = x;
  }
}

}  // namespace tarnwick::bar
