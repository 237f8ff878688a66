#include <gtest/gtest.h>

#include <chrono>

#include "core/menubar/item_mover.h"
#include "core/menubar/menu_bar_scanner.h"
#include "tests/core/fake_desktop.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::FakeDesktop;

class MenuBarTest : public testing::Test {
 protected:
  std::vector<std::string> scanned(const std::optional<std::string>& only = std::nullopt) {
    std::vector<std::string> lines;
    for (const auto& item : scanner.scan(only)) {
      lines.push_back(item.bundleId + "/" + item.appName + "@" +
                      std::to_string(static_cast<int>(item.frame.x)));
    }
    return lines;
  }
  using Lines = std::vector<std::string>;

  FakeDesktop desktop;
  MenuBarScanner scanner{desktop, desktop, desktop};
  ItemMover mover{desktop.loop, desktop, scanner};
};

TEST_F(MenuBarTest, ListsEligibleApplicationsItemsInTheDesktopsOrder) {
  desktop.launch("org.one", {20, 20}, "One");
  desktop.launch(std::nullopt, {20});
  desktop.launch("org.tarnwick.Tarnwick", {20});
  desktop.launch("com.apple.clock", {20});
  desktop.launch("com.applepie", {20});
  desktop.launch("org.empty");
  const auto broken = desktop.launch("org.broken", {20});
  const auto partly = desktop.launch("org.partly", {20, 20, 20});
  desktop.extrasMenuBars[broken] = std::string("no element");
  desktop.unreadable.insert(desktop.itemsOf(partly)[1]);
  // The first item of One is dragged to the right end: order of listing is not order of place.
  desktop.row.moveTo(desktop.itemsOf(100)[0], 99);

  EXPECT_EQ(scanned(), (Lines{"org.one/One@980", "org.one/One@800", "com.applepie/com.applepie@880",
                              "org.partly/org.partly@920", "org.partly/org.partly@960"}));
  EXPECT_EQ(desktop.snapshots, 1) << "a scan is one round trip";
  EXPECT_EQ(scanned("org.partly").size(), 2u);
  EXPECT_EQ(scanned("org.part"), Lines{});
  EXPECT_EQ(scanned("com.apple.clock"), Lines{});
  EXPECT_EQ(scanned("org.tarnwick.Tarnwick"), Lines{});
  desktop.extrasMenuBars[broken] = std::monostate{};
  EXPECT_EQ(scanned("org.broken"), Lines{});

  const auto item = scanner.scan("org.one").front();
  desktop.trusted = false;
  EXPECT_EQ(scanned(), Lines{});
  EXPECT_EQ(scanned("org.one"), Lines{});
  desktop.trusted = true;
  EXPECT_EQ(scanner.frame(item.element), desktop.frameOf(item.element.item));
  desktop.quit(item.pid);
  EXPECT_EQ(scanner.frame(item.element), std::nullopt);
}

TEST_F(MenuBarTest, PostsOneCommandDragAndPutsThePointerBack) {
  desktop.launch("org.one", {20, 20, 20});
  desktop.pointerLocation = Point{5, 600};
  const auto item = scanner.scan().back();  // centre at 990
  EXPECT_TRUE(mover.move(item, 930));

  std::vector<FakeDesktop::PostedEvent> expected;
  expected.push_back({{PointerEventType::leftDown, {990, 12}, ModifierFlags::command}, 0ms});
  for (int step = 1; step <= 6; ++step) {
    expected.push_back(
        {{PointerEventType::leftDragged, {990.0 - 10 * step, 12}, ModifierFlags::command},
         step * 12ms});
  }
  expected.push_back({{PointerEventType::leftUp, {930, 12}, ModifierFlags::command}, 84ms});
  EXPECT_EQ(desktop.posted, expected);
  EXPECT_EQ(desktop.loop.now(), 246ms);
  EXPECT_EQ(desktop.warps, std::vector<Point>(1, Point{5, 600}));
}

TEST_F(MenuBarTest, TouchesNothingWhenTheItemStandsThere) {
  desktop.launch("org.one", {20});
  desktop.pointerLocation = Point{5, 600};
  EXPECT_TRUE(mover.move(scanner.scan().front(), 990));
  EXPECT_TRUE(desktop.posted.empty());
  EXPECT_TRUE(desktop.warps.empty());
  EXPECT_EQ(desktop.loop.now(), 0ms);
}

TEST_F(MenuBarTest, JudgesAMoveByMoreThanEightPoints) {
  struct Case {
    double neighbour;  // its length is how far the swap moves the item
    bool moved;
  };
  for (const Case c : {Case{8, false}, Case{8.5, true}, Case{9, true}}) {
    SCOPED_TRACE(c.neighbour);
    FakeDesktop bar;
    MenuBarScanner barScanner(bar, bar, bar);
    bar.launch("org.one", {c.neighbour, 20});
    const auto item = barScanner.scan().back();
    EXPECT_EQ(ItemMover(bar.loop, bar, barScanner).move(item, item.frame.midX() - 100), c.moved);
    EXPECT_EQ(bar.posted.size(), 8u);
    EXPECT_TRUE(bar.warps.empty()) << "no location, nothing to put back";
  }
}

TEST_F(MenuBarTest, AnItemWhoseOwnerQuitsDuringTheDragHasNotMoved) {
  const auto pid = desktop.launch("org.one", {20, 20});
  desktop.pointerLocation = Point{1, 1};
  desktop.loop.onPause = [&] {
    if (desktop.posted.size() == 4) desktop.quit(pid);
  };
  EXPECT_FALSE(mover.move(scanner.scan().back(), 900));
  EXPECT_EQ(desktop.posted.size(), 8u);
  EXPECT_EQ(desktop.warps.size(), 1u);
}

}  // namespace
}  // namespace tarnwick
