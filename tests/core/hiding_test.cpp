#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::boundary;
using test::capturerOf;
using test::handle;

// The controller by itself: nobody sees what a test writes into the store.
class HidingTest : public test::StoryTest {
 protected:
  HidingTest() { desktop.tellsOfWrites = false; }
};

TEST_F(HidingTest, StartsAsAnAccessoryWithHandleAndBoundary) {
  start();
  EXPECT_EQ(desktop.policies, std::vector<ActivationPolicy>{ActivationPolicy::accessory});
  EXPECT_EQ(desktop.frameOf(desktop.ownItem(handle)), (Rect{976, 0, 24, 24}));
  EXPECT_EQ(desktop.frameOf(desktop.ownItem(boundary)), (Rect{974, 0, 2, 24}));
  EXPECT_EQ(desktop.images.at(handle), SeparatorItem::handleImage(HandleIconStyle::mono));
  EXPECT_FALSE(desktop.images.contains(boundary));
  EXPECT_EQ(AppState::controller.lock(), delegate->menuBarController());
}

// Chevrons as their three points, line width, red and alpha; the ground as its rectangle, radius
// and the colours of its ends.
std::string described(const Drawing& drawing) {
  std::ostringstream text;
  text << drawing.size.width << "x" << drawing.size.height
       << (drawing.isTemplate ? " template" : "");
  for (const auto& shape : drawing.shapes) {
    if (const auto* path = std::get_if<StrokedPath>(&shape)) {
      for (const Point& point : path->points) text << " " << point.x << "," << point.y;
      text << " " << path->lineWidth << " " << path->color.red << " " << path->color.alpha << ";";
    } else {
      const auto& ground = std::get<GradientRoundedRect>(shape);
      text << " " << ground.rect.x << "," << ground.rect.y << " " << ground.rect.width << "x"
           << ground.rect.height << " " << ground.cornerRadius;
      for (const Color& color : {ground.top, ground.bottom}) {
        text << " " << color.red << "," << color.green << "," << color.blue << "," << color.alpha;
      }
      text << ";";
    }
  }
  return text.str();
}

TEST_F(HidingTest, DrawsTheHandleAsTwoChevrons) {
  EXPECT_EQ(described(SeparatorItem::handleImage(HandleIconStyle::mono)),
            "18x18 template 3.42,10.8 9,15.12 14.58,10.8 2.34 0 0.45;"
            " 3.42,5.4 9,9.72 14.58,5.4 2.34 0 1;");
  EXPECT_EQ(described(SeparatorItem::handleImage(HandleIconStyle::color)),
            "18x18 0.5,0.5 17x17 4.32 0.3,0.55,0.98,1 0.13,0.32,0.85,1;"
            " 4.32,9.72 9,14.04 13.68,9.72 2.34 1 0.5; 4.32,5.04 9,9.36 13.68,5.04 2.34 1 1;");
}

TEST_F(HidingTest, DrawsTheHandleInTheStoredStyle) {
  desktop.defaults["handleIconStyle"] = std::string("color");
  start();
  EXPECT_FALSE(desktop.images.at(handle).isTemplate);
  desktop.defaults["handleIconStyle"] = std::string("Color");
  controller().refreshHandleIcon();
  EXPECT_TRUE(desktop.images.at(handle).isTemplate);
}

TEST_F(HidingTest, RoutesClicks) {
  int settings = 0;
  const auto owner = std::make_shared<MenuBarController>(services, Preferences(desktop),
                                                         capturerOf(desktop), [&] { ++settings; });
  owner->start();
  const auto command = ModifierFlags::command;
  const auto shift = ModifierFlags::shift;
  for (const char* item : {handle, boundary}) {
    desktop.click(item, {ClickType::leftMouseUp, 0, std::nullopt});
    desktop.click(item, {ClickType::rightMouseUp, command | shift, std::nullopt});
    EXPECT_EQ(settings, 0);
    desktop.click(item, {ClickType::rightMouseUp, shift, std::nullopt});
    EXPECT_EQ(std::exchange(settings, 0), 1);
  }
}

TEST_F(HidingTest, FrameOfOwnItemsNeedsAScreenAndAnAnsweringBar) {
  SeparatorItem item(SeparatorRole::handle, handle, desktop, desktop, Preferences(desktop), {});
  EXPECT_EQ(item.screenFrameTopLeft(), (Rect{976, 0, 24, 24}));
  desktop.barAnswers = false;
  EXPECT_EQ(item.screenFrameTopLeft(), std::nullopt);
  desktop.barAnswers = true;
  desktop.screens.clear();
  EXPECT_EQ(item.screenFrameTopLeft(), std::nullopt);
}

TEST_F(HidingTest, RunsItsPassesOnTimeAndNotBefore) {
  const auto seen = desktop.launch("org.a", {30});
  hide({"org.a"});
  start();
  ASSERT_FALSE(isHidden(seen)) << "right of the boundary a collapsed boundary hides nothing";
  desktop.loop.advance(999ms);
  EXPECT_FALSE(controller().isEnforcing());
  desktop.loop.advance(1ms);
  EXPECT_TRUE(controller().isEnforcing()) << "first pass after a second";
  EXPECT_EQ(boundaryLength(), 2);
  desktop.loop.advance(250ms);
  EXPECT_TRUE(isHidden(seen));
  EXPECT_FALSE(controller().isEnforcing());
  EXPECT_EQ(boundaryLength(), 16000);

  const auto late = desktop.launch("org.a", {30});
  desktop.announceLaunch();
  desktop.loop.advance(3250ms - 1ns);
  EXPECT_FALSE(isHidden(late));
  desktop.loop.advance(1ns);
  EXPECT_TRUE(isHidden(late)) << "stowed by the pass 3 seconds after the launch";

  const auto silent = desktop.launch("org.a", {30});
  const auto toTimer = 30s - desktop.loop.now();
  desktop.loop.advance(toTimer + 249ms);
  EXPECT_FALSE(isHidden(silent));
  desktop.loop.advance(1ms);
  EXPECT_TRUE(isHidden(silent)) << "stowed by the timer's pass";
}

TEST_F(HidingTest, StowsEveryItemOfHiddenApplicationsAndNoOther) {
  const auto a = desktop.launch("org.a", {30, 26});
  const auto b = desktop.launch("org.b", {26});
  const auto c = desktop.launch("org.c", {40});
  hide({"org.a", "org.c", "org.absent"});
  start();
  desktop.loop.advance(2s);
  EXPECT_TRUE(isHidden(a));
  EXPECT_TRUE(isHidden(c));
  EXPECT_FALSE(isHidden(b));
  EXPECT_EQ(drags(), 3);
  EXPECT_EQ(desktop.frameOf(desktop.itemsOf(b)[0]).maxX(), 1000);

  // Each drag starts at the item and ends 12 points left of where the boundary then is.
  const double boundaryX[] = {1000 - 122 - 26, 1000 - 122 - 26 + 30, 1000 - 122 - 26 + 56};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(desktop.posted[static_cast<std::size_t>(i * 8 + 7)].event.location.x,
              boundaryX[i] - 12);
  }

  // Everything in its place: the next pass looks once, touches nothing and raises no flag.
  desktop.snapshots = desktop.looseReads = 0;
  controller().enforceStow();
  EXPECT_FALSE(controller().isEnforcing());
  EXPECT_EQ(desktop.snapshots, 1);
  EXPECT_EQ(desktop.looseReads, 0);
  EXPECT_EQ(boundaryLength(), 16000);
}

TEST_F(HidingTest, SidesAreDecidedByCentreZeroAndTheBoundarysLeftEdge) {
  const auto a = desktop.launch("org.a", {20});
  const auto filler = desktop.launch("org.b", {964});
  const auto item = desktop.itemsOf(a)[0];
  start();
  hide({"org.a"});
  desktop.row.moveTo(item, 0);
  ASSERT_EQ(desktop.frameOf(item), (Rect{-10, 0, 20, 24}));
  controller().enforceStow();
  EXPECT_FALSE(controller().isEnforcing()) << "a centre at 0 is off screen";
  EXPECT_EQ(boundaryLength(), 16000);

  desktop.row.setLength(desktop.itemsOf(filler)[0], 100);
  for (const bool dragged : {false, true}) {
    controller().unstow("org.none");  // brings everything into view, then stows
    desktop.loop.advance(250ms);
    ASSERT_TRUE(controller().isEnforcing());
    const double left = desktop.frameOf(item).minX();
    desktop.ownFrame = Rect{dragged ? left - 0.5 : left, 0, 2, 24};
    desktop.loop.advance(250ms);
    EXPECT_EQ(drags(), dragged ? 1 : 0);
  }
}

TEST_F(HidingTest, AStubbornItemCostsItsShareOfDragsAndWaitsForTheNextPass) {
  const auto a = desktop.launch("org.a", {30});
  const auto b = desktop.launch("org.b", {30});
  desktop.stubborn.insert(desktop.itemsOf(a)[0]);
  hide({"org.a", "org.b"});
  start();
  desktop.loop.advance(2s);
  EXPECT_EQ(drags(), 2);
  EXPECT_FALSE(isHidden(a));
  EXPECT_FALSE(isHidden(b)) << "the stubborn one used up every attempt";
  EXPECT_FALSE(controller().isEnforcing());
  EXPECT_EQ(boundaryLength(), 16000);
  desktop.stubborn.clear();
  desktop.loop.advance(30s);
  EXPECT_TRUE(isHidden(a) && isHidden(b));
  EXPECT_EQ(drags(), 4);
}

TEST_F(HidingTest, APassRequestedDuringAPassIsDropped) {
  const auto a = desktop.launch("org.a", {30});
  start();
  hide({"org.a"});
  int changes = 0;
  const auto observer = controller().onEnforcingChanged([&] { ++changes; });
  controller().enforceStow();
  const auto b = desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});
  controller().enforceStow();
  desktop.loop.advance(260ms);
  EXPECT_TRUE(isHidden(a));
  EXPECT_FALSE(isHidden(b)) << "the pass carries the set it began with";
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(drags(), 1);
}

TEST_F(HidingTest, NothingMovesWithoutPermission) {
  desktop.launch("org.a", {30});
  hide({"org.a"});
  desktop.trusted = false;
  start();
  desktop.loop.advance(40s);
  EXPECT_TRUE(desktop.posted.empty());
  EXPECT_EQ(boundaryLength(), 16000) << "as launch left it";
  controller().unstow("org.a");
  desktop.loop.advance(1s);
  EXPECT_EQ(boundaryLength(), 16000);
  EXPECT_EQ(desktop.snapshots, 0);
  EXPECT_EQ(desktop.accessPrompts, 0);
}

TEST_F(HidingTest, EmptySetExpandsTheBoundaryOnceARunningPassHasCollapsedIt) {
  desktop.launch("org.a", {30});
  hide({"org.a"});
  start();
  desktop.loop.advance(1100ms);
  hide({});
  double length = 0;
  const auto observer = controller().onEnforcingChanged([&] { length = boundaryLength(); });
  desktop.loop.advance(400ms);
  EXPECT_EQ(length, 16000);
  controller().enforceStow();
  EXPECT_EQ(boundaryLength(), 2);
  EXPECT_FALSE(controller().isEnforcing());
}

TEST_F(HidingTest, WhatALongRowLeavesOutOfSightIsNotDragged) {
  desktop.launch("org.a", {30});
  desktop.launch("org.wide", {1000});
  desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});
  start();
  desktop.loop.advance(2s);
  EXPECT_EQ(drags(), 1) << "of the one in sight, though both stand right of the boundary";
  EXPECT_EQ(desktop.posted[0].event.location.x, 985);
}

TEST_F(HidingTest, MissingFramesOrItemsEndAPassCollapsed) {
  const auto a = desktop.launch("org.a", {30});
  start();
  hide({"org.a"});
  desktop.barAnswers = false;
  controller().enforceStow();
  desktop.loop.advance(300ms);
  EXPECT_EQ(drags(), 0);
  EXPECT_FALSE(controller().isEnforcing());
  EXPECT_EQ(boundaryLength(), 16000);

  desktop.barAnswers = true;
  controller().enforceStow();
  desktop.quit(a);
  desktop.loop.advance(1s);
  EXPECT_EQ(drags(), 0);
  EXPECT_FALSE(controller().isEnforcing());
  EXPECT_EQ(boundaryLength(), 16000);
}

TEST_F(HidingTest, ReleaseBringsOneApplicationBackAndStowsTheRest) {
  const auto a = desktop.launch("org.a", {30, 30});
  const auto b = desktop.launch("org.b", {30});
  const auto c = desktop.launch("org.c", {30});
  hide({"org.a", "org.b"});
  start();
  desktop.loop.advance(2s);
  ASSERT_TRUE(isHidden(a) && isHidden(b));
  ASSERT_EQ(drags(), 3);

  hide({"org.b"});
  controller().unstow("org.a");
  EXPECT_EQ(boundaryLength(), 2);
  desktop.loop.advance(249ms);
  EXPECT_EQ(drags(), 3);
  desktop.loop.advance(1s);
  for (const auto id : desktop.itemsOf(a)) EXPECT_GT(desktop.frameOf(id).midX(), 0);
  EXPECT_TRUE(isHidden(b));
  EXPECT_FALSE(isHidden(c));
  EXPECT_EQ(drags(), 5) << "each of its items once, and none of another's";
  for (const std::size_t drop : {31U, 39U}) {
    EXPECT_EQ(desktop.posted[drop].event.location.x, 1000 - 30 - 24 + 24)
        << "the handle's right edge as it was before the first";
  }
  EXPECT_EQ(boundaryLength(), 16000);

  // One stands on the right when its centre does: at the boundary's right edge or beyond.
  const auto centre = desktop.frameOf(desktop.itemsOf(c)[0]).midX();
  for (const double edge : {centre, centre + 0.5}) {
    desktop.ownFrame = Rect{edge - 2, 0, 2, 24};
    controller().unstow("org.c");
    desktop.loop.advance(1s);
    EXPECT_EQ(drags(), edge == centre ? 5 : 6);
  }
}

TEST_F(HidingTest, ASecondReleaseCutsTheFirstOnesPauseShort) {
  const auto a = desktop.launch("org.a", {30});
  const auto b = desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});
  start();
  desktop.loop.advance(2s);
  hide({});
  controller().unstow("org.a");
  controller().unstow("org.b");
  desktop.loop.runPosted();
  EXPECT_EQ(drags(), 3) << "the first is performed at once";
  EXPECT_FALSE(isHidden(a));
  desktop.loop.advance(250ms);
  EXPECT_EQ(drags(), 4);
  EXPECT_FALSE(isHidden(b));
  EXPECT_EQ(boundaryLength(), 2);
}

TEST_F(HidingTest, CallbacksOutliveTheControllerHarmlessly) {
  start();
  desktop.loop.advance(2s);
  delegate.reset();
  EXPECT_TRUE(AppState::controller.expired());
  desktop.announceLaunch();
  desktop.loop.advance(60s);
  EXPECT_EQ(desktop.ownItem(handle), 0u) << "its items are gone with it";
}

}  // namespace
}  // namespace tarnwick
