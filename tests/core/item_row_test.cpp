#include "bar/row/item_row.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bar/row/row_pointer.h"

namespace tarnwick::bar {
namespace {

constexpr std::uint32_t super = RowPointer::superModifier;
using Hand = RowPointer::Hand;

// Items of the given lengths with ids and keys 1, 2, 3 ... from left to right, ending at x = 500.
ItemRow rowOf(const std::vector<double>& lengths) {
  ItemRow row;
  row.setBounds(500, 24);
  ItemId id = 0;
  for (const double length : lengths) {
    ++id;
    row.insert(id, std::to_string(id), Placement::rightmost, length);
  }
  return row;
}

TEST(ItemRowTest, LongItemsPushWhatIsLeftOfThemBeyondTheLeftEnd) {
  ItemRow row = rowOf({30, 2, 24, 26});
  EXPECT_EQ(row.frame(1), (Rect{418, 0, 30, 24}));
  row.setLength(2, 16000);
  EXPECT_EQ(row.frame(1), (Rect{-15580, 0, 30, 24}));
  EXPECT_EQ(row.frame(2), (Rect{-15550, 0, 16000, 24}));
  EXPECT_EQ(row.frame(3), (Rect{450, 0, 24, 24}));
  EXPECT_EQ(row.itemAt({-15565, 12}), 1u);
  EXPECT_EQ(row.itemAt({499.9, 12}), 4u);
  EXPECT_EQ(row.itemAt({500, 12}), std::nullopt);
  EXPECT_EQ(row.itemAt({460, 24}), std::nullopt);
}

TEST(ItemRowTest, NewItemsGoToTheirEndsAndKnownOnesToTheirPlaces) {
  ItemRow row;
  row.setBounds(500, 24);
  row.restoreOrder({"a", "gone", "b", "a", ""});
  EXPECT_EQ(row.rememberedOrder(), (std::vector<std::string>{"a", "gone", "b"}));
  row.insert(1, "b", Placement::rightmost, 10);
  row.insert(2, "new", Placement::rightmost, 10);
  row.insert(3, "native", Placement::leftmost, 10);
  row.insert(4, "gone", Placement::leftmost, 10);
  row.insert(5, "b", Placement::rightmost, 10);  // a second item under one key
  EXPECT_EQ(row.order(), (std::vector<ItemId>{3, 4, 1, 2, 5}));
  EXPECT_EQ(row.rememberedOrder(),
            (std::vector<std::string>{"native", "a", "gone", "b", "new", "b#2"}));
  row.remove(4);
  row.remove(1);
  row.insert(6, "gone", Placement::rightmost, 10);
  row.insert(7, "b", Placement::leftmost, 10);
  EXPECT_EQ(row.order(), (std::vector<ItemId>{3, 6, 7, 2, 5}));
}

TEST(ItemRowTest, ItemsOfOneKeyTakeTheFirstCopyThatIsFree) {
  ItemRow row;
  row.restoreOrder({"a#3", "a#02", "a#x", "a"});
  for (ItemId id = 1; id <= 4; ++id) row.insert(id, "a", Placement::rightmost, 10);
  EXPECT_EQ(row.rememberedOrder(),
            (std::vector<std::string>{"a#3", "a#02", "a#x", "a", "a#2", "a#4"}));
  EXPECT_EQ(row.order(), (std::vector<ItemId>{3, 1, 2, 4}));
  row.remove(2);
  row.insert(5, "a", Placement::rightmost, 10);
  EXPECT_EQ(row.order(), (std::vector<ItemId>{3, 1, 5, 4}));
}

TEST(ItemRowTest, AnItemIsPlacedImmediatelyLeftOfAnother) {
  const struct {
    ItemId item;
    ItemId sibling;
    std::vector<std::string> expected;  // 4 is not there
  } cases[] = {{1, 3, {"2", "4", "1", "3"}}, {3, 1, {"3", "1", "2", "4"}},
               {2, 3, {"1", "4", "2", "3"}}, {1, 2, {"1", "2", "4", "3"}},
               {3, 3, {"1", "2", "4", "3"}}, {1, 4, {"1", "2", "4", "3"}}};
  for (const auto& [item, sibling, expected] : cases) {
    ItemRow row;
    row.restoreOrder({"1", "2", "4", "3"});
    for (const ItemId id : {1, 2, 3}) row.insert(id, std::to_string(id), Placement::leftmost, 20);
    const auto before = row.rememberedOrder();
    EXPECT_EQ(row.placeLeftOf(item, sibling), expected != before);
    EXPECT_EQ(row.rememberedOrder(), expected) << item << " left of " << sibling;
  }
}

TEST(ItemRowTest, RemembersNoMoreThanItsLimitAndDropsTheKeysOfWhoHasMost) {
  ItemRow row;
  row.restoreOrder({"quiet/item", "many/first"});
  for (int i = 0; i < 1100; ++i) {
    row.insert(1, "many/" + std::to_string(i), Placement::rightmost, 10);
    row.remove(1);
  }
  const auto keys = row.rememberedOrder();
  EXPECT_EQ(keys.size(), ItemRow::maximumKeys);
  EXPECT_EQ(keys.front(), "quiet/item");
  EXPECT_EQ(keys.back(), "many/1099");
}

struct DragCase {
  const char* name;
  std::vector<double> lengths;
  ItemId item;
  double by;  // points from the item's centre
  std::vector<ItemId> expected;
  double grab = 0;  // the pointer's distance from there
  Hand hand = Hand::user;
};

TEST(RowPointerTest, ADraggedItemSwapsWithNeighboursWhoseCentreItPasses) {
  const DragCase cases[] = {
      {"below the threshold", {20, 4}, 2, -3.9, {1, 2}},
      {"up to a neighbour's centre", {20, 20}, 2, -20, {1, 2}},
      {"past a neighbour's centre", {20, 20}, 2, -20.5, {2, 1}},
      {"past two", {20, 20, 20}, 3, -41, {3, 1, 2}},
      {"to the right", {20, 20, 20}, 1, 41, {2, 3, 1}},
      {"beyond every item", {20, 20, 20}, 1, 4000, {2, 3, 1}},
      {"a wide one past a narrow one", {4, 60}, 2, -33, {2, 1}},
      {"a narrow one past a wide one", {60, 4}, 2, -33, {2, 1}},
      {"past a passive one", {20, 0, 20, 440}, 3, -25, {3, 1, 2, 4}},
      // Rows wider than the bar, whose left end is at x = 0.
      {"past one half in sight", {20, 10, 475}, 2, -16, {2, 1, 3}},
      {"to the left end", {2, 6, 494}, 2, -5.5, {1, 2, 3}, 2.5},
      {"not past what is out of sight", {2, 8, 24, 471}, 3, -28.9, {1, 3, 2, 4}, 11.9},
      {"not to where it is out of sight", {60, 24, 456}, 2, -43, {1, 2, 3}, 11},
      {"not pushing another out of sight", {40, 20, 465}, 1, 36, {1, 2, 3}, 19},
      {"pushing it by a program", {40, 20, 465}, 1, 36, {2, 1, 3}, 19, Hand::posted},
      {"dropped out of sight", {30, 2, 20, 480}, 3, -24, {1, 3, 2, 4}, 0, Hand::posted},
      {"out of sight", {20, 2, 20, 20, 500}, 4, -41, {1, 4, 2, 3, 5}, 0, Hand::posted},
      {"fetched from there", {20, 2, 24, 496}, 1, 52, {2, 3, 1, 4}, 0, Hand::posted},
  };
  for (const DragCase& c : cases) {
    for (const int steps : {1, 6}) {
      SCOPED_TRACE(std::string(c.name) + " in " + std::to_string(steps));
      ItemRow row = rowOf(c.lengths);
      RowPointer pointer(row);
      const Rect start = *row.frame(c.item);
      const double from = start.midX() + c.grab;
      pointer.press({from, 12}, super, c.hand);
      for (int step = 1; step <= steps; ++step) pointer.drag({from + c.by * step / steps, 12});
      const auto outcome = pointer.release({from + c.by, 12});
      EXPECT_EQ(row.order(), c.expected);
      EXPECT_EQ(outcome.orderSettled, c.by <= -4 || c.by >= 4);
      EXPECT_EQ(outcome.clickedItem, std::nullopt);
      EXPECT_EQ(pointer.dragOffset(), 0);
    }
  }
}

TEST(RowPointerTest, AHeldItemIsLetGoWhenAnythingButItsDragTakesItOutOfSight) {
  const struct {
    const char* name;
    double to;  // where item 2 of 3 is dragged
    ItemId resized;
    double length;
    bool ends;
  } cases[] = {
      {"it becomes passive", 449, 2, 0, true},
      {"it is pushed out of sight", 449, 3, 16'000, true},
      {"it is pushed half out of sight", 449, 3, 465, false},
      {"it grows", 449, 2, 40, false},
      {"it was put out of sight by its drag", -30, 1, 490, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ItemRow row = rowOf({20, 20, 20});
    RowPointer pointer(row);
    if (c.to < 0) row.setLength(3, 485);
    pointer.press({row.frame(2)->midX(), 12}, super, Hand::posted);
    pointer.drag({c.to, 12});
    ASSERT_EQ(row.order().front(), 2u);
    row.setLength(c.resized, c.length);
    const auto outcome = pointer.rowChanged();
    EXPECT_EQ(outcome.orderSettled, c.ends) << "what was stored meanwhile is stored again";
    EXPECT_EQ(pointer.isPressed(), !c.ends);
    EXPECT_EQ(row.order().front(), c.ends ? 1u : 2u);
  }
}

TEST(RowPointerTest, KeepsThePointerWhereItGrabbedTheItem) {
  ItemRow row = rowOf({20, 20});
  RowPointer pointer(row);
  pointer.press({499, 12}, super, Hand::user);  // 9 right of the centre of item 2
  pointer.drag({489, 12});
  EXPECT_EQ(pointer.draggedItem(), 2u);
  EXPECT_EQ(pointer.dragOffset(), -10);
  pointer.drag({478, 200});  // height does not matter
  EXPECT_EQ(row.order(), (std::vector<ItemId>{2, 1}));
  EXPECT_EQ(pointer.dragOffset(), -1);
}

TEST(RowPointerTest, ItemsThatComeAndGoDuringADragKeepTheirPlaces) {
  for (const bool moved : {false, true}) {
    ItemRow row = rowOf({20, 20, 20});
    RowPointer pointer(row);
    pointer.press({470, 12}, super, Hand::user);  // item 2
    pointer.drag({moved ? 440.0 : 465.0, 12});
    row.remove(1);
    row.insert(4, "new", Placement::leftmost, 20);
    row.insert(5, "another", Placement::rightmost, 20);
    pointer.cancel();
    EXPECT_FALSE(pointer.release({440, 12}).orderSettled);
    EXPECT_EQ(row.order(), (std::vector<ItemId>{4, 2, 3, 5}));
    EXPECT_EQ(row.rememberedOrder(), (std::vector<std::string>{"new", "1", "2", "3", "another"}));
  }
  // What was stored meanwhile is stored again also when the item goes back to where it was.
  ItemRow row = rowOf({20, 20, 20});
  RowPointer pointer(row);
  pointer.press({490, 12}, super, Hand::user);  // item 3
  pointer.drag({465, 12});
  row.insert(4, "new", Placement::leftmost, 20);
  EXPECT_TRUE(pointer.release({491, 12}).orderSettled);
  EXPECT_EQ(row.order(), (std::vector<ItemId>{4, 1, 2, 3}));
}

TEST(RowPointerTest, ClicksReachTheItemUnlessSuperIsHeld) {
  ItemRow row = rowOf({20, 20});
  RowPointer pointer(row);
  pointer.press({490, 12}, 0, Hand::user);
  pointer.drag({485, 12});
  EXPECT_EQ(pointer.release({485, 12}).clickedItem, 2u);
  pointer.press({490, 12}, 0, Hand::user);
  EXPECT_EQ(pointer.release({470, 12}).clickedItem, std::nullopt) << "released on another item";
  pointer.press({490, 12}, super | 1, Hand::user);
  EXPECT_EQ(pointer.release({490, 12}).clickedItem, std::nullopt);
  pointer.press({490, 12}, 0, Hand::user);
  pointer.forget(2);
  row.remove(2);
  EXPECT_EQ(pointer.release({490, 12}).clickedItem, std::nullopt);
  EXPECT_FALSE(pointer.isPressed());
}

}  // namespace
}  // namespace tarnwick::bar
