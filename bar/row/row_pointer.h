#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bar/row/item_row.h"

namespace tarnwick::bar {

// What the left pointer button does to the row: a drag with the Super key held rearranges it, a
// click without it reaches the item. Where the row is wider than the bar:
// - The user's hand neither passes nor puts anything beyond the bar's left end (x = 0), where it
//   could not fetch it back. Posted events put items there and fetch them back.
// - What holds an item in sight is cancelled when anything but the drag itself takes the item out
//   of sight: nobody can mean to drag what is elsewhere.
class RowPointer {
 public:
  static constexpr double dragThreshold = 4;  // points
  static constexpr std::uint32_t superModifier = 8;

  // Whose events: the user's, or those that a program posts.
  enum class Hand : std::uint8_t { user, posted };

  struct Outcome {
    bool layoutChanged = false;  // frames or the dragged item's picture moved
    bool orderSettled = false;   // a drag has ended, also one back at its start: remember the order
    std::optional<ItemId> clickedItem;  // a click without Super ended on the item it began on
  };

  explicit RowPointer(ItemRow& row) : row_(row) {}

  Outcome press(Point at, std::uint32_t modifiers, Hand hand);
  Outcome drag(Point to);
  Outcome release(Point at);
  // Ends the press or drag; a dragged item returns to where it was.
  Outcome cancel();
  // To be called when an item is about to leave the row: cancels what holds it.
  Outcome forget(ItemId id);
  // To be called when the row was changed by anybody else.
  Outcome rowChanged();

  bool isPressed() const { return pressed_.has_value(); }
  // The item being dragged, and how far right of its place in the row it is to be drawn, in points.
  std::optional<ItemId> draggedItem() const;
  double dragOffset() const;

 private:
  struct Press {
    ItemId item = 0;
    Hand hand = Hand::user;
    Point start;
    double grabOffset = 0;           // pointer x minus the item's centre x
    std::vector<std::string> order;  // of the row's keys at that moment
    bool super = false;
    bool dragging = false;
    bool inSight = false;  // whether the item was, after the last event or change of the row
    double centre = 0;     // where the dragged item's centre is drawn
  };

  bool isInSight(ItemId id) const;
  // Whether the held item may change places with its neighbour on that side.
  bool mayPassLeft(ItemId neighbour) const;
  bool mayPassRight(ItemId neighbour) const;

  ItemRow& row_;
  std::optional<Press> pressed_;
};

}  // namespace tarnwick::bar
