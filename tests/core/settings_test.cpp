#include "core/settings/settings_texts.h"
#include "core/settings/settings_view.h"

#include <chrono>
#include <sstream>

#include "tests/core/story_test.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

class SettingsTest : public StoryTest {
 protected:
  SettingsView& open() {
    delegate->openSettings();
    return *desktop.settings.windows.back()->view;
  }
  static Names namesOf(const SettingsView& view) {
    Names names;
    for (const auto& candidate : view.candidates()) names.push_back(candidate.name);
    return names;
  }
  Names storedHidden() const {
    return Preferences(const_cast<FakeDesktop&>(desktop)).hiddenBundleIds();
  }
  // "name: members; ..." in stored order.
  std::string groups() {
    std::ostringstream text;
    for (const auto& group : Preferences(desktop).groups()) {
      text << group.name << ":";
      for (const auto& bundleId : group.bundleIds) text << " " << bundleId;
      text << "; ";
    }
    return text.str();
  }
  void openPanel() { desktop.click(handle, {ClickType::leftMouseUp, 0, {}}); }
};

TEST_F(SettingsTest, OpensOneWindowAndBringsItForwardAgain) {
  start();
  desktop.click(handle, {ClickType::rightMouseUp, 0, {}});
  EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
  ASSERT_EQ(desktop.settings.windows.size(), 1U);
  EXPECT_TRUE(desktop.settings.windows[0]->visible);
  EXPECT_EQ(desktop.settings.windows[0]->timesMadeKey, 2);
  EXPECT_EQ(desktop.settings.windows[0]->timesFront, 2);
}

TEST_F(SettingsTest, ListsPresentAndHiddenApplicationsByNameWithoutRegardToCase) {
  desktop.launch("org.tarnwick.Tarnwick", {20});
  desktop.launch("com.apple.clock", {20});
  desktop.launch("zebra", {20}, "apple");
  desktop.launch("two", {20, 20}, "Banana");
  desktop.launch("none", {}, "Without items");
  desktop.running(2).icon = ThemeIcon{"apple-icon"};
  hide({"two", "absent"});
  start();
  SettingsView& view = open();
  EXPECT_EQ(namesOf(view), (Names{"absent", "apple", "Banana"}));
  EXPECT_FALSE(view.candidates()[0].icon);
  EXPECT_EQ(view.candidates()[1].icon, ThemeIcon{"apple-icon"});
  EXPECT_TRUE(view.binding("two").get());
  EXPECT_FALSE(view.binding("zebra").get());

  // Nothing changes by itself while the window is open.
  desktop.launch("later", {20});
  EXPECT_EQ(view.candidates().size(), 3U);
  view.rescan();
  EXPECT_EQ(view.candidates().size(), 4U);
}

TEST_F(SettingsTest, WithoutPermissionOnlyHiddenOnesAreListedUntilARescanAfterTheGrant) {
  desktop.trusted = false;
  desktop.launch("app", {20}, "App");
  hide({"hidden"});
  start();
  SettingsView& view = open();
  EXPECT_FALSE(view.hasPermission());
  EXPECT_EQ(namesOf(view), Names{"hidden"});
  view.openAccessibilitySettings();
  EXPECT_EQ(desktop.accessPrompts, 1);
  view.openCaptureSettings();
  EXPECT_EQ(desktop.capture.requests, 1);
  view.openMenuBarSettings();
  EXPECT_EQ(desktop.settings.panes,
            (std::vector{SettingsPane::accessibilityPrivacy, SettingsPane::screenCapturePrivacy,
                         SettingsPane::menuBar}));
  desktop.trusted = true;
  EXPECT_FALSE(view.hasPermission());
  view.rescan();
  EXPECT_TRUE(view.hasPermission());
  EXPECT_EQ(namesOf(view), (Names{"App", "hidden"}));
}

TEST_F(SettingsTest, SwitchHidesAndReleasesAndLeavesTheGroup) {
  const auto pid = desktop.launch("app", {20}, "App");
  start();
  desktop.loop.advance(2s);
  SettingsView& view = open();
  const auto hidden = view.binding("app");
  hidden.set(true);
  EXPECT_EQ(storedHidden(), Names{"app"});
  desktop.loop.advance(2s);
  EXPECT_TRUE(isHidden(pid));
  view.groupBinding("app").set("Work");

  hidden.set(false);
  EXPECT_TRUE(storedHidden().empty());
  EXPECT_EQ(groups(), "");
  desktop.loop.advance(2s);
  EXPECT_FALSE(isHidden(pid));

  // The field's text outlives the switch until the next rescan, the group does not.
  hidden.set(true);
  EXPECT_EQ(view.groupBinding("app").get(), "Work");
  EXPECT_EQ(groups(), "");
  view.rescan();
  EXPECT_EQ(view.groupBinding("app").get(), "");
}

TEST_F(SettingsTest, GroupFollowsTheFieldKeystrokeByKeystroke) {
  hide({"a", "b"});
  start();
  openPanel();
  SettingsView& view = open();
  view.groupBinding("b").set("Home");
  const auto field = view.groupBinding("a");
  for (const auto& [typed, stored] : std::vector<std::pair<std::string, std::string>>{
           {"W", "Home: b; W: a; "},
           {"Wo ", "Home: b; Wo: a; "},
           {"Home", "Home: b a; "},
           {"\u5bb6 \u05d1\u05d9\u05ea", "Home: b; \u5bb6 \u05d1\u05d9\u05ea: a; "},
           {"  ", "Home: b; "}}) {
    const int before = desktop.panelWindow->renders;
    field.set(typed);
    EXPECT_EQ(field.get(), typed) << "shown untrimmed";
    EXPECT_EQ(groups(), stored);
    EXPECT_EQ(desktop.panelWindow->renders, before + 1);
  }
  EXPECT_EQ(storedHidden(), (Names{"a", "b"}));
}

TEST_F(SettingsTest, ColumnsAreClampedWhenStored) {
  start();
  openPanel();
  SettingsView& view = open();
  EXPECT_EQ(view.panelColumns(), 5);
  for (const auto& [typed, shown] :
       std::vector<std::pair<int, int>>{{0, 1}, {25, 20}, {50, 20}, {7, 7}, {-3, 1}}) {
    view.setPanelColumns(typed);
    EXPECT_EQ(view.panelColumns(), shown) << typed;
    EXPECT_EQ(desktop.defaults["panelColumns"], DefaultsValue(std::int64_t{shown})) << typed;
    EXPECT_EQ(desktop.panelWindow->root.columns, shown) << typed;
  }
}

TEST_F(SettingsTest, PictureStyleCapturesOrAsksAndRefreshesThePanelTwice) {
  for (const bool allowed : {true, false}) {
    desktop.capture.allowed = allowed;
    hide({"app"});
    if (allowed) {
      desktop.launch("app", {20}, "App");
      desktop.capture.anyPicture = bitmapOf(1, {{1, 2, 3, 255}});
      start();
      desktop.loop.advance(3s);
      openPanel();
    }
    SettingsView& view = open();
    view.setIconStyle(PanelIconStyle::appIcon);
    desktop.loop.advance(3s);
    const int asked = desktop.capture.requests;
    const int before = desktop.panelWindow->renders;
    view.setIconStyle(PanelIconStyle::statusIcon);
    EXPECT_EQ(desktop.defaults["panelIconStyle"], DefaultsValue("statusIcon"));
    EXPECT_EQ(desktop.capture.requests, asked + (allowed ? 0 : 1));
    EXPECT_EQ(view.showsCaptureNote(), !allowed);
    EXPECT_EQ(desktop.panelWindow->renders, before + 1);
    desktop.loop.advance(1900ms);
    const int meanwhile = desktop.panelWindow->renders;
    desktop.loop.advance(200ms);
    EXPECT_EQ(desktop.panelWindow->renders, meanwhile + 1);
  }
}

TEST_F(SettingsTest, CaptureNoteGoesWhenTheAccessComes) {
  start();
  SettingsView& view = open();
  view.setIconStyle(PanelIconStyle::statusIcon);
  bool noteDrawn = true;
  const auto observer = view.onChanged([&] { noteDrawn = view.showsCaptureNote(); });
  desktop.capture.allowed = true;
  desktop.capture.accessChanged.notify();
  EXPECT_FALSE(noteDrawn);
}

TEST_F(SettingsTest, HandleStyleIsDrawnAtOnce) {
  start();
  SettingsView& view = open();
  const Drawing mono = desktop.images[handle];
  view.setHandleStyle(HandleIconStyle::color);
  EXPECT_NE(desktop.images[handle], mono);
  EXPECT_EQ(desktop.defaults["handleIconStyle"], DefaultsValue("color"));
}

TEST_F(SettingsTest, LoginSwitchShowsTheRealState) {
  start();
  SettingsView& view = open();
  int changes = 0;
  const auto observer = view.onChanged([&] { ++changes; });
  desktop.settings.loginRefused = true;
  view.setLaunchAtLogin(true);
  EXPECT_FALSE(view.launchAtLogin());
  EXPECT_EQ(changes, 1) << "the switch must be drawn off again";
  desktop.settings.loginRefused = false;
  view.setLaunchAtLogin(true);
  EXPECT_TRUE(view.launchAtLogin() && desktop.settings.loginEnabled);
  desktop.settings.loginEnabled = false;  // by another program
  view.refreshLaunchAtLogin();
  EXPECT_FALSE(view.launchAtLogin());
}

TEST_F(SettingsTest, ShowsWhatOthersStoreAndLeavesTypedTextAlone) {
  hide({"a", "b"});
  start();
  openPanel();
  SettingsView& view = open();
  view.groupBinding("b").set("Home ");
  desktop.loop.advance(1s);
  int drawn = 0;
  const auto observer = view.onChanged([&] { ++drawn; });
  const Preferences others(desktop);
  const Drawing mono = desktop.images[handle];
  others.setHiddenBundleIds({"b", "c"});
  others.setPanelColumns(7);
  others.setPanelIconStyle(PanelIconStyle::statusIcon);
  others.setHandleIconStyle(HandleIconStyle::color);
  others.assign("c", "Work");
  desktop.loop.advance(1s);
  EXPECT_EQ(view.hidden(), (std::set<std::string>{"b", "c"}));
  EXPECT_EQ(namesOf(view), (Names{"b", "c"})) << "a row for what has joined";
  EXPECT_EQ(view.panelColumns(), 7);
  EXPECT_EQ(view.iconStyle(), PanelIconStyle::statusIcon);
  EXPECT_EQ(view.handleStyle(), HandleIconStyle::color);
  EXPECT_NE(desktop.images[handle], mono);
  EXPECT_EQ(view.groupBinding("b").get(), "Home ");
  EXPECT_EQ(view.groupBinding("c").get(), "Work");
  EXPECT_EQ(desktop.panelWindow->root.columns, 7);
  EXPECT_EQ(desktop.panelWindow->root.sections.size(), 2U);
  EXPECT_GT(std::exchange(drawn, 0), 0);
  desktop.set("KeyboardShortcuts_x", "");
  desktop.loop.advance(1s);
  EXPECT_EQ(drawn, 0) << "nothing that it shows";

  // What others store and what the user does in the same moment keep out of each other's way.
  desktop.tellsOfWrites = false;
  others.setGroups({{"Elsewhere", {"c"}}});
  view.groupBinding("b").set("Home");
  desktop.tellOfDefaults();
  desktop.loop.advance(1s);
  EXPECT_EQ(view.groupBinding("c").get(), "Elsewhere");
  others.setGroups({{"", {"c"}}, {"Work", {"c"}}});
  desktop.tellOfDefaults();
  desktop.loop.advance(1s);
  EXPECT_EQ(view.groupBinding("c").get(), "") << "the first group counts";
  others.setGroups({{"Work", {"c"}}});
  desktop.tellsOfWrites = true;
  desktop.tellOfDefaults();
  desktop.loop.advance(1s);

  // A write that fails leaves the controls at what is stored.
  desktop.defaultsAreReadOnly = true;
  const int requests = desktop.capture.requests;
  view.binding("b").set(false);
  view.groupBinding("c").set("Wor");
  view.setPanelColumns(3);
  view.setIconStyle(PanelIconStyle::appIcon);
  view.setHandleStyle(HandleIconStyle::mono);
  EXPECT_TRUE(view.binding("b").get());
  EXPECT_EQ(view.groupBinding("c").get(), "Work");
  EXPECT_EQ(view.panelColumns(), 7);
  EXPECT_EQ(view.iconStyle(), PanelIconStyle::statusIcon);
  EXPECT_EQ(desktop.capture.requests, requests);
  EXPECT_EQ(view.handleStyle(), HandleIconStyle::color);
}

TEST_F(SettingsTest, RestartEndsThisInstanceAfterTheLaunchHasReported) {
  start();
  SettingsView& view = open();
  view.restart();
  EXPECT_EQ(desktop.lifeEvents, Names{"new instance"});
  desktop.loop.runPosted();
  EXPECT_EQ(desktop.lifeEvents, (Names{"new instance", "terminate"}));
  view.quit();
  EXPECT_EQ(desktop.lifeEvents.size(), 3U);
}

TEST_F(SettingsTest, PlatformWordsOnlyTheTextsThatItNames) {
  constexpr PlatformText texts[] = {{settingstexts::systemIcons, "Here"}};
  services.wording = texts;
  start();
  const SettingsView& view = open();
  EXPECT_STREQ(view.text(settingstexts::systemIcons), "Here");
  EXPECT_STREQ(view.text(settingstexts::systemIconsNote), settingstexts::systemIconsNote);
}

TEST_F(SettingsTest, UnknownVersionsAreQuestionMarks) {
  start();
  const SettingsView& view = open();
  EXPECT_EQ(view.versionDescription(), "? (?)");
  desktop.bundle["CFBundleShortVersionString"] = "1.4";
  desktop.bundle["CFBundleVersion"] = "27";
  EXPECT_EQ(view.versionDescription(), "1.4 (27)");
}

TEST_F(SettingsTest, BindingsOutliveTheirView) {
  start();
  auto view = std::make_shared<SettingsView>(services, delegate->menuBarController());
  const auto hidden = view->binding("app");
  const auto group = view->groupBinding("app");
  view.reset();
  hidden.set(true);
  group.set("Work");
  EXPECT_FALSE(hidden.get());
  EXPECT_EQ(group.get(), "");
  EXPECT_TRUE(storedHidden().empty());
}

}  // namespace
}  // namespace tarnwick::test
