#include "core/prefs/preferences.h"

#include <gtest/gtest.h>

#include "tests/core/fake_desktop.h"

namespace tarnwick {
namespace {

using test::FakeDesktop;
using Groups = std::vector<AppGroup>;

struct StoredCase {
  const char* name;
  std::optional<DefaultsValue> stored;  // under every key
  std::vector<std::string> hidden = {};
  int columns = 5;
  PanelIconStyle panelStyle = PanelIconStyle::appIcon;
  HandleIconStyle handleStyle = HandleIconStyle::mono;
  Groups groups = {};
};

TEST(PreferencesTest, UnusableStoredValuesReadAsDefaults) {
  const auto data = [](const char* text) { return DefaultsData{text}; };
  const StoredCase cases[] = {
      {"nothing", std::nullopt},
      {"boolean", true},
      {"columns 0", std::int64_t{0}},
      {.name = "columns 25", .stored = std::int64_t{25}, .columns = 20},
      {.name = "columns -3", .stored = std::int64_t{-3}, .columns = 1},
      {.name = "columns beyond int", .stored = std::int64_t{1} << 40, .columns = 20},
      {.name = "statusIcon", .stored = "statusIcon", .panelStyle = PanelIconStyle::statusIcon},
      {"other case", "StatusIcon"},
      {.name = "color", .stored = "color", .handleStyle = HandleIconStyle::color},
      {"strings", std::vector<std::string>{"b", "a"}, {"b", "a"}},
      {.name = "groups",
       .stored = data(R"([{"name":"Work","bundleIds":["a","b"]}])"),
       .groups = {{"Work", {"a", "b"}}}},
      {"groups not an array", data(R"({"name":"Work","bundleIds":[]})")},
      {"group without members", data(R"([{"name":"Work"}])")},
      {"member no string", data(R"([{"name":"W","bundleIds":["a",1]}])")},
      {"no JSON", data("[{\"name\"")},
  };
  for (const StoredCase& c : cases) {
    SCOPED_TRACE(c.name);
    FakeDesktop desktop;
    for (const char* key :
         {"hiddenBundleIds", "appGroups", "panelColumns", "panelIconStyle", "handleIconStyle"}) {
      if (c.stored) desktop.defaults[key] = *c.stored;
    }
    const Preferences preferences(desktop);
    EXPECT_EQ(preferences.hiddenBundleIds(), c.hidden);
    EXPECT_EQ(preferences.panelColumns(), c.columns);
    EXPECT_EQ(preferences.panelIconStyle(), c.panelStyle);
    EXPECT_EQ(preferences.handleIconStyle(), c.handleStyle);
    EXPECT_EQ(preferences.groups(), c.groups);
  }
}

TEST(PreferencesTest, WritesNormalisedValues) {
  FakeDesktop desktop;
  const Preferences preferences(desktop);
  preferences.setPanelIconStyle(PanelIconStyle::statusIcon);
  EXPECT_EQ(desktop.defaults["panelIconStyle"], DefaultsValue(std::string("statusIcon")));
  preferences.setHandleIconStyle(HandleIconStyle::mono);
  EXPECT_EQ(desktop.defaults["handleIconStyle"], DefaultsValue(std::string("mono")));
  preferences.setGroups({{"\xff", {"a"}}});
  EXPECT_FALSE(desktop.defaults.contains("appGroups")) << "what cannot be encoded is removed";
}

struct AssignCase {
  const char* name;
  std::vector<std::pair<std::string, std::string>> assignments;  // bundle identifier, group
  Groups expected;
};

TEST(PreferencesTest, AssignMakesMovesAndDissolvesGroups) {
  const AssignCase cases[] = {
      {"trimmed", {{"a", " \t Work \u00a0\u3000"}, {"b", "Work"}}, {{"Work", {"a", "b"}}}},
      {"case matters", {{"a", "Work"}, {"b", "work"}}, {{"Work", {"a"}}, {"work", {"b"}}}},
      {"inner blanks stay", {{"a", "My  Work"}}, {{"My  Work", {"a"}}}},
      {"dissolved",
       {{"a", "Work"}, {"b", "Play"}, {"a", "Home"}},
       {{"Play", {"b"}}, {"Home", {"a"}}}},
      {"blank name", {{"a", "Work"}, {"b", "Work"}, {"a", " \u2003\t"}}, {{"Work", {"b"}}}},
      {"line break stays", {{"a", "Work"}, {"b", "Work\n"}}, {{"Work", {"a"}}, {"Work\n", {"b"}}}},
      {"again: to the end", {{"a", "Work"}, {"b", "Work"}, {"a", "Work"}}, {{"Work", {"b", "a"}}}},
  };
  for (const AssignCase& c : cases) {
    SCOPED_TRACE(c.name);
    FakeDesktop desktop;
    const Preferences preferences(desktop);
    for (const auto& [bundleId, group] : c.assignments) preferences.assign(bundleId, group);
    EXPECT_EQ(preferences.groups(), c.expected);
  }
}

TEST(PreferencesTest, GroupNameIsTheFirstGroupThatHoldsTheApplication) {
  FakeDesktop desktop;
  const Preferences preferences(desktop);
  preferences.setGroups({{"One", {"x", "y"}}, {"Two", {"y", "Y"}}});
  EXPECT_EQ(preferences.groupName("y"), "One");
  EXPECT_EQ(preferences.groupName("Y"), "Two");
  EXPECT_EQ(preferences.groupName("z"), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
