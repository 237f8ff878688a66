#include <gtest/gtest.h>

#include <chrono>

#include "core/panel/panel_section.h"
#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::handle;

std::string describe(const PanelSection::Entry& entry) {
  std::string icon = "none";
  if (const auto* name = std::get_if<ThemeIcon>(&entry.icon)) icon = name->name;
  if (std::holds_alternative<Picture>(entry.icon)) icon = "picture";
  return entry.bundleId + " " + entry.name + " " + icon + (entry.isStatusIcon ? " status" : "") +
         (entry.isMonochrome ? " mono" : "");
}

class PanelTest : public test::StoryTest {
 protected:
  std::vector<std::string> described(const std::vector<PanelSection>& sections) {
    std::vector<std::string> lines;
    for (const auto& section : sections) {
      lines.push_back("[" + section.id() + "]");
      for (const auto& entry : section.entries) lines.push_back(describe(entry));
    }
    return lines;
  }
  std::vector<std::string> built() {
    return described(buildSections(Preferences(desktop), desktop, *capturer));
  }
  using Lines = std::vector<std::string>;

  test::FakeDesktop::PanelWindowState& window() { return *desktop.panelWindow; }
  bool isOpen() const { return desktop.panelWindow && desktop.panelWindow->visible; }

  std::shared_ptr<StatusIconCapturer> capturer = test::capturerOf(desktop);
};

TEST_F(PanelTest, ListsUngroupedFirstThenGroupsInStoredOrder) {
  desktop.launch("org.a", {}, "A");
  desktop.running(0).icon = ThemeIcon{"a-icon"};
  desktop.launch("org.b");
  desktop.launch("org.c", {}, "C one");
  desktop.launch("org.c", {}, "C two");
  Preferences(desktop).setGroups(
      {{"Work", {"org.x", "org.c", "org.a"}}, {"Idle", {"org.shown"}}, {"Play", {"org.b"}}});
  EXPECT_EQ(built(), Lines{}) << "groups alone show nothing";
  hide({"org.off", "org.b", "org.a", "org.c", "org.off"});
  EXPECT_EQ(built(),
            (Lines{"[\u2022ungrouped]", "org.off org.off none", "org.off org.off none", "[Work]",
                   "org.c C two none", "org.a A a-icon", "[Play]", "org.b org.b none"}));
}

TEST_F(PanelTest, ShowsCapturedPicturesInStatusStyle) {
  desktop.launch("org.a", {}, "A");
  desktop.running(0).icon = ThemeIcon{"a-icon"};
  desktop.capture.files["org.grey.png"] = test::bitmapOf(1, {{9, 9, 9, 255}});
  desktop.capture.files["org.red.png"] = test::bitmapOf(1, {{200, 9, 9, 255}});
  hide({"org.a", "org.grey", "org.red"});
  EXPECT_EQ(built(), (Lines{"[\u2022ungrouped]", "org.a A a-icon", "org.grey org.grey none",
                            "org.red org.red none"}));
  desktop.defaults["panelIconStyle"] = std::string("statusIcon");
  EXPECT_EQ(built(),
            (Lines{"[\u2022ungrouped]", "org.a A a-icon", "org.grey org.grey picture status mono",
                   "org.red org.red picture status"}));
}

TEST_F(PanelTest, PicturesAreShrunkToFitAndNeverEnlarged) {
  const std::pair<Size, Size> cases[] = {
      {{44, 22}, {34, 17}}, {{16, 40}, {11.2, 28}},   {{20, 14}, {20, 14}},
      {{68, 56}, {34, 28}}, {{0.5, 0.5}, {0.5, 0.5}},
  };
  for (const auto& [picture, drawn] : cases) {
    const Size size = PanelMetrics::pictureSize(picture);
    EXPECT_NEAR(size.width, drawn.width, 1e-9);
    EXPECT_NEAR(size.height, drawn.height, 1e-9);
  }
}

TEST_F(PanelTest, StandsBelowTheHandleInsideTheScreen) {
  struct Case {
    const char* name;
    std::optional<Rect> anchor;
    std::vector<Screen> screens;
    std::optional<Point> topLeft;
    Size size;
    std::size_t main = 0;
  };
  const Screen screen{{0, 0, 1000, 800}, {0, 24, 1000, 776}};
  const Screen right{{1000, 0, 600, 400}, {1000, 0, 590, 400}};
  constexpr std::size_t nobody = 9;
  const Case cases[] = {
      {"right edges line up", Rect{700, 0, 24, 24}, {screen}, Point{524, 28}, {200, 100}},
      {"near the left edge", Rect{50, 0, 24, 24}, {screen}, Point{8, 28}, {200, 100}},
      {"near the right edge", Rect{975, 0, 24, 24}, {screen}, Point{792, 28}, {200, 100}},
      {"no screens", Rect{700, 0, 24, 24}, {}, std::nullopt, {200, 100}},
      {"no anchor yet", std::nullopt, {screen}, std::nullopt, {200, 100}},
      {"a low screen: it scrolls",
       Rect{700, 0, 24, 24},
       {{{0, 0, 1000, 100}, {0, 24, 1000, 76}}},
       Point{524, 28},
       {200, 64}},
      {"no main screen", Rect{700, 0, 24, 24}, {screen}, Point{516, 28}, {200, 100}, nobody},
      {"the user works on another monitor",
       Rect{980, 0, 24, 24},
       {screen, right},
       Point{792, 28},
       {200, 100},
       1},
      {"the user works left of the handle",
       Rect{1200, 0, 24, 24},
       {screen, right},
       Point{1024, 28},
       {200, 100}},
      {"near another monitor's left edge",
       Rect{1010, 0, 24, 24},
       {screen, right},
       Point{1008, 28},
       {200, 100},
       1},
      {"near another monitor's lower right corner",
       Rect{1570, 340, 24, 24},
       {screen, right},
       Point{1382, 368},
       {200, 24},
       1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    desktop.screens = c.screens;
    desktop.mainScreen = c.main;
    const auto panel = std::make_shared<PanelController>(services, std::weak_ptr<PanelOwner>(),
                                                         Preferences(desktop), capturer);
    panel->show(c.anchor);
    EXPECT_EQ(window().topLeft, c.topLeft);
    EXPECT_EQ(window().content, c.size);
    panel->close();
    panel->close();
    panel->show(std::nullopt);
    EXPECT_EQ(window().topLeft, c.topLeft) << "below the frame of the last time";
  }
}

TEST_F(PanelTest, TogglesByClicksAndClosesOnPressesElsewhere) {
  start();
  desktop.click(handle, {ClickType::leftMouseUp, 0, std::nullopt});
  EXPECT_TRUE(isOpen());
  EXPECT_EQ(window().topLeft, (Point{792, 28}));
  EXPECT_EQ(desktop.pressMonitors, 1);
  desktop.click(handle, {ClickType::rightMouseUp, 0, std::nullopt});
  EXPECT_TRUE(isOpen()) << "a right click asks for the settings only";
  desktop.click(test::boundary, {ClickType::leftMouseUp, 0, std::nullopt});
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(desktop.pressMonitors, 0);

  controller().togglePanel();
  desktop.outsidePresses.notify();
  desktop.outsidePresses.notify();
  desktop.loop.runPosted();
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(desktop.pressMonitors, 0);
  controller().togglePanel();
  EXPECT_TRUE(isOpen());
  desktop.barVanished.notify();
  desktop.loop.runPosted();
  EXPECT_FALSE(isOpen()) << "no handle, no panel";
  EXPECT_EQ(desktop.warps.size() + desktop.posted.size(), 0u);
}

TEST_F(PanelTest, RefreshesWhatIsOpenAndNothingElse) {
  start();
  controller().refreshPanel();
  EXPECT_EQ(desktop.panelWindow, nullptr);
  controller().togglePanel();
  EXPECT_EQ(window().renders, 1);
  hide({"org.a"});
  desktop.defaults["panelColumns"] = std::int64_t{7};
  controller().refreshPanel();
  EXPECT_EQ(window().root.sections.size(), 1u);
  EXPECT_EQ(window().root.columns, 7);
  controller().togglePanel();
  controller().refreshPanel();
  EXPECT_EQ(window().renders, 2);
}

TEST_F(PanelTest, StatusStyleTakesMissingPicturesAndShowsThemTwoSecondsLater) {
  const auto a = desktop.launch("org.a", {30});
  hide({"org.a"});
  start();
  desktop.capture.allowed = false;
  desktop.loop.advance(2s);
  ASSERT_TRUE(isHidden(a));
  desktop.capture.allowed = true;
  desktop.capture.anyPicture = test::bitmapOf(1, {{9, 9, 9, 255}});
  desktop.defaults["panelIconStyle"] = std::string("statusIcon");
  controller().togglePanel();
  EXPECT_EQ(described(window().root.sections)[1], "org.a org.a none");
  desktop.loop.advance(2s - 1ns);
  EXPECT_EQ(window().renders, 1);
  desktop.loop.advance(1ns);
  EXPECT_EQ(window().renders, 2);
  EXPECT_EQ(described(window().root.sections)[1], "org.a org.a picture status mono");
  EXPECT_TRUE(isHidden(a));
  controller().togglePanel();
  controller().togglePanel();
  controller().togglePanel();
  desktop.loop.advance(3s);
  EXPECT_EQ(window().renders, 3) << "closed meanwhile: nothing is drawn";
}

}  // namespace
}  // namespace tarnwick
