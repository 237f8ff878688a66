#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick::bar {

using ItemId = std::uint64_t;

// Where an item goes that has no remembered place.
enum class Placement : std::uint8_t {
  leftmost,   // native items: left of everything there
  rightmost,  // items of other protocols: at the row's right end, next to the clock
};

// The order and layout of the bar's items: one row, laid out from its right end, so that a longer
// item pushes everything on its left further left, beyond x = 0 if need be. Remembers the places of
// items that are not there now. A pure model: no toolkit, no time.
class ItemRow {
 public:
  static constexpr std::size_t maximumKeys = 1'000;

  // The row ends at x = `right` (points) and is `height` points high, its top at y = 0.
  void setBounds(double right, double height);

  // Item keys, left to right, those of absent items among them. Setting it is for before the first
  // insertion. At most maximumKeys are kept, but those of present items always: a new key drops
  // that of an absent item, of its own application (what stands before '/' or ':') if there is one.
  void restoreOrder(std::vector<std::string> keys);
  std::vector<std::string> rememberedOrder() const;

  // Two present items with one key get remembered places of their own, in order of insertion.
  void insert(ItemId id, const std::string& key, Placement placement, double length);
  void remove(ItemId id);
  void setLength(ItemId id, double length);

  bool contains(ItemId id) const;
  std::string key(ItemId id) const;            // as remembered; empty for an unknown item
  double length(ItemId id) const;              // 0 for an unknown item
  std::optional<Rect> frame(ItemId id) const;  // absent for an unknown item
  std::optional<ItemId> itemAt(Point point) const;
  std::vector<ItemId> order() const;                    // present items, left to right
  std::vector<std::pair<ItemId, Rect>> frames() const;  // the same with their places
  double left() const;                                  // x of the leftmost item's left edge

  // Moves a present item one place among the present items.
  void moveLeft(ItemId id);
  void moveRight(ItemId id);
  // Moves it to place `index` of order().
  void moveTo(ItemId id, std::size_t index);
  // Moves it immediately left of `sibling`, the places of absent items included. False when it
  // stands there already, or one of them is not present.
  bool placeLeftOf(ItemId id, ItemId sibling);
  // Moves it to where an absent item's `key` is remembered; no effect when that is not known.
  void placeAt(ItemId id, const std::string& key);
  // Moves it back between the keys it stood between in `order`, an earlier rememberedOrder().
  void restorePlace(ItemId id, const std::vector<std::string>& order);

 private:
  struct Slot {
    std::string key;
    ItemId id = 0;  // 0 while the item is not there
    double length = 0;
    double x = 0;
  };

  using Place = std::vector<Slot>::iterator;

  Place slotFor(const std::string& key, Placement placement);
  bool moveBefore(Place slot, Place place);
  void dropAbsent(std::string_view application);
  Place find(ItemId id);
  std::vector<Slot>::const_iterator find(ItemId id) const;
  void layOut();

  std::vector<Slot> slots_;
  double right_ = 0;
  double height_ = 0;
};

}  // namespace tarnwick::bar
