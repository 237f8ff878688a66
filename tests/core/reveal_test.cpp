#include <gtest/gtest.h>

#include <chrono>

#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::boundary;

constexpr double expanded = 2;
constexpr double collapsed = 16000;

// One hidden application, stowed, with its picture taken; the time is 2 s.
struct StowedStory : test::Story {
  StowedStory() {
    desktop.capture.allowed = true;
    a = desktop.launch("org.a", {30});
    hide({"org.a"});
    desktop.capture.anyPicture = test::bitmapOf(1, {{0, 0, 0, 255}});
    start();
    desktop.loop.advance(2s);
    EXPECT_TRUE(isHidden(a));
    EXPECT_EQ(desktop.capture.files.size(), 1u);
    desktop.capture.captured.clear();
  }
  std::size_t captures() const { return desktop.capture.captured.size(); }

  std::int32_t a = 0;
};

class RevealTest : public testing::Test, protected StowedStory {};

TEST_F(RevealTest, ShowsEverythingForAWhile) {
  controller().revealTemporarily(15s);
  EXPECT_EQ(boundaryLength(), expanded);
  EXPECT_FALSE(isHidden(a));
  desktop.loop.advance(15s - 1ns);
  EXPECT_EQ(boundaryLength(), expanded);
  desktop.loop.advance(300ms);
  EXPECT_EQ(boundaryLength(), collapsed);
  EXPECT_EQ(drags(), 1) << "it was left of the boundary all the time";
}

TEST(RevealEndTest, ComesAsItsInterruptionsSay) {
  struct Case {
    const char* name;
    std::function<void(StowedStory&)> interruption;  // 5 s into the reveal
    Duration shownUntil;                             // from the start of the reveal
  };
  const Case cases[] = {
      {"nothing", [](StowedStory&) {}, 15s},
      {"another reveal", [](StowedStory& t) { t.controller().revealTemporarily(12s); }, 17s},
      {"a release", [](StowedStory& t) { t.controller().unstow("org.other"); }, 5s + 250ms},
      {"a stow pass", [](StowedStory& t) { t.controller().enforceStow(); }, 5s},
      {"an activation: until the timer's pass, 30 s after the start",
       [](StowedStory& t) { t.controller().activate("org.a", false, std::nullopt); }, 28s},
      {"an activation that finds nothing",
       [](StowedStory& t) { t.controller().activate("org.none", false, std::nullopt); }, 15s},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StowedStory story;
    story.controller().revealTemporarily(15s);
    story.desktop.loop.advance(5s);
    c.interruption(story);
    // Every way ends in a stow pass, whose move phase takes 250 ms.
    if (c.shownUntil > 5s) {
      story.desktop.loop.advance(c.shownUntil - 5s - 1ms);
      EXPECT_FALSE(story.controller().isEnforcing());
      EXPECT_EQ(story.boundaryLength(), expanded);
      story.desktop.loop.advance(2ms);
    }
    EXPECT_TRUE(story.controller().isEnforcing());
    story.desktop.loop.advance(2s);
    EXPECT_EQ(story.boundaryLength(), collapsed);
  }
}

TEST_F(RevealTest, AMovePhaseThatRunsAlreadyEndsIt) {
  desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});
  controller().enforceStow();
  desktop.loop.advance(100ms);
  controller().revealTemporarily(15s);
  EXPECT_EQ(boundaryLength(), expanded);
  desktop.loop.advance(700ms);
  EXPECT_EQ(boundaryLength(), collapsed);
}

TEST_F(RevealTest, WithoutPermissionTheItemsStayInView) {
  desktop.trusted = false;
  controller().revealTemporarily(1s);
  desktop.loop.advance(60s);
  EXPECT_EQ(boundaryLength(), expanded);
}

TEST_F(RevealTest, PassesPictureWhatHasNone) {
  const auto b = desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});
  desktop.capture.files.clear();
  controller().enforceStow();
  desktop.loop.advance(1s);
  EXPECT_TRUE(isHidden(b));
  EXPECT_EQ(captures(), 1u) << "the other is in memory";
  EXPECT_TRUE(desktop.capture.files.contains("org.b.png"));
}

TEST_F(RevealTest, CapturePassActsOnlyForMissingPictures) {
  controller().captureHiddenIcons();
  EXPECT_EQ(boundaryLength(), collapsed) << "nothing is missing";
  const auto b = desktop.launch("org.b", {30});
  hide({"org.a", "org.b"});

  desktop.capture.allowed = false;
  controller().captureHiddenIcons();
  desktop.trusted = false;
  desktop.capture.allowed = true;
  controller().captureHiddenIcons();
  desktop.trusted = true;
  desktop.loop.advance(1s);
  EXPECT_EQ(captures(), 0u);
  EXPECT_EQ(desktop.accessPrompts + desktop.capture.requests, 0) << "nothing is asked";

  controller().captureHiddenIcons();  // on screen: taken as it stands
  EXPECT_EQ(boundaryLength(), collapsed);
  desktop.loop.advance(1s);
  EXPECT_EQ(captures(), 1u);
  EXPECT_FALSE(isHidden(b)) << "a direct capture moves nothing";
}

TEST(CapturePassTest, IsCutShortByWhatInterruptsItAndEndsCollapsed) {
  struct Case {
    const char* name;
    std::function<void(StowedStory&)> interruption;  // 100 ms into the pass
    std::size_t soon, later;                         // pictures 40 ms and 300 ms afterwards
  };
  const Case cases[] = {
      {"nothing", [](StowedStory&) {}, 0, 2},
      {"a reveal", [](StowedStory& t) { t.controller().revealTemporarily(1s); }, 2, 2},
      {"a release", [](StowedStory& t) { t.controller().unstow("org.other"); }, 2, 2},
      {"an activation",
       [](StowedStory& t) { t.controller().activate("org.a", false, std::nullopt); }, 2, 2},
      {"a second one while all is in view",
       [](StowedStory& t) { t.controller().captureHiddenIcons(); }, 1, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StowedStory story;
    const auto b = story.desktop.launch("org.b", {30});
    story.desktop.row.moveTo(story.desktop.itemsOf(b)[0], 0);
    story.hide({"org.a", "org.b"});
    story.controller().captureHiddenIcons();
    story.desktop.loop.advance(100ms);
    EXPECT_EQ(story.captures(), 0U);
    c.interruption(story);
    story.desktop.loop.advance(40ms);
    EXPECT_EQ(story.captures(), c.soon);
    EXPECT_EQ(story.boundaryLength(), expanded);
    story.desktop.loop.advance(260ms);
    EXPECT_EQ(story.captures(), c.later);
    story.desktop.loop.advance(1s);
    EXPECT_EQ(story.boundaryLength(), collapsed);
  }
}

TEST_F(RevealTest, ACapturePassThatFailedTwiceIsNotRepeated) {
  desktop.capture.files.clear();
  desktop.capture.anyPicture.reset();
  auto b = desktop.launch("org.b", {30});
  desktop.row.moveTo(desktop.itemsOf(b)[0], 0);
  hide({"org.a", "org.b"});
  const auto reveals = [&] {
    controller().captureHiddenIcons();
    const bool revealed = boundaryLength() == expanded;
    desktop.loop.advance(2s);
    return revealed;
  };
  desktop.capture.delay = 1s;
  EXPECT_TRUE(reveals());
  desktop.capture.delay = 10ms;
  EXPECT_TRUE(reveals()) << "a run that was refused says nothing";
  EXPECT_TRUE(reveals()) << "once may be bad luck";
  EXPECT_FALSE(reveals()) << "it paints nothing";
  controller().revealTemporarily(1s);
  const auto before = captures();
  controller().captureHiddenIcons();
  desktop.loop.advance(500ms);
  EXPECT_EQ(captures(), before + 1) << "in view it is tried again";
  desktop.loop.advance(2s);

  desktop.quit(b);
  b = desktop.launch("org.b", {30});
  desktop.row.moveTo(desktop.itemsOf(b)[0], 0);
  desktop.row.setLength(desktop.itemsOf(desktop.launch("org.wide", {1000}))[0], 1000);
  EXPECT_TRUE(reveals() && reveals()) << "a new item";
  EXPECT_FALSE(reveals()) << "the row is wider than the bar";
}

TEST_F(RevealTest, CapturePassRevealsItemsOutOfSightAndHidesThemAgain) {
  const auto b = desktop.launch("org.b", {30});
  desktop.row.moveTo(desktop.itemsOf(b)[0], 0);
  hide({"org.a", "org.b"});
  controller().captureHiddenIcons();
  EXPECT_EQ(boundaryLength(), expanded);
  desktop.loop.advance(250ms - 1ns);
  EXPECT_EQ(captures(), 0u);
  desktop.loop.advance(1ns + 30ms);
  EXPECT_EQ(captures(), 2u) << "every hidden item in view is pictured again";
  desktop.loop.advance(300ms);
  EXPECT_EQ(boundaryLength(), collapsed);
  EXPECT_TRUE(isHidden(a) && isHidden(b));
}

}  // namespace
}  // namespace tarnwick
