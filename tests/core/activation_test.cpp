#include <gtest/gtest.h>

#include <chrono>

#include "core/menubar/proxy_menu.h"
#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Entries = std::map<std::int32_t, test::FakeDesktop::MenuEntry>;

class ActivationTest : public test::StoryTest {
 protected:
  void SetUp() override {
    a = desktop.launch("org.a", {30, 30});
    item = desktop.itemsOf(a)[0];
    start();
  }
  std::string pressed() const { return std::to_string(item) + " AXPress"; }

  static MenuItem leaf(const std::string& title, bool enabled, const AXElement& element) {
    return {title, enabled, false, {}, element};
  }
  AXElement entry(std::int32_t id) const { return {AXElement::Kind::menuEntry, a, item, id}; }

  std::int32_t a = 0;
  bar::ItemId item = 0;
  const Entries oneEntry{{0, {{}, {}, {1}}}, {1, {std::string("Open"), true, {}}}};
};

TEST_F(ActivationTest, CopiesTitlesStatesSeparatorsAndTwoLevelsOfSubmenus) {
  desktop.openMenus[item] = {
      {0, {{}, {}, {1, 2, 3, 4, 5}}},
      {1, {std::string("Open"), true, {}}},
      {2, {std::string(), false, {}}},        // a separator
      {3, {std::nullopt, std::nullopt, {}}},  // unreadable: empty and enabled
      {4, {std::string("Greyed"), false, {}}},
      {5, {Point{1, 2}, std::string("yes"), {6}}},  // wrong types: empty and enabled
      {6, {std::string("Level one"), true, {7}}},
      {7, {std::string("Level two"), true, {8}}},
      {8, {std::string("Level three"), true, {}}},
  };
  const AXElement status{AXElement::Kind::statusItem, a, item, 0};
  const Menu expected{
      leaf("Open", true, entry(1)),
      {"", true, true, {}, std::nullopt},
      leaf("", true, entry(3)),
      leaf("Greyed", false, entry(4)),
      {"",
       true,
       false,
       {{"Level one", true, false, {leaf("Level two", true, entry(7))}, std::nullopt}},
       std::nullopt},
  };
  EXPECT_EQ(buildMenu(readMenuEntries(desktop, status, 0)), expected);
  desktop.openMenus[item][0].children.clear();
  EXPECT_TRUE(readMenuEntries(desktop, status, 0).empty());
}

TEST_F(ActivationTest, ShowsTheMenuAsSoonAsItCanBeReadAndPressesTheChoice) {
  for (const bool rightClick : {false, true}) {
    desktop.performed.clear();
    desktop.menuReadings = 0;
    desktop.openMenus.clear();
    controller().togglePanel();
    controller().activate("org.a", rightClick, 300.0);
    EXPECT_FALSE(desktop.panelWindow->visible);
    EXPECT_EQ(desktop.performed, std::vector{pressed()});
    EXPECT_EQ(desktop.timeouts[item], 0.15F);
    EXPECT_EQ(desktop.places[item], (Point{292, 26})) << "for a menu that the owner shows itself";
    desktop.loop.advance(275ms);  // between the fifth and the sixth reading
    EXPECT_EQ(desktop.menuReadings, 5);
    desktop.openMenus[item] = oneEntry;
    EXPECT_FALSE(desktop.menuIsOpen);
    desktop.loop.advance(25ms);
    ASSERT_TRUE(desktop.menuIsOpen);
    EXPECT_EQ(desktop.shownMenu->at, (Point{292, 26}));

    desktop.loop.advance(40s);
    EXPECT_TRUE(desktop.menuIsOpen);
    desktop.closeMenu({true, entry(1)});
    EXPECT_EQ(desktop.performed.back(), std::to_string(item) + ":1 AXPress");
    EXPECT_EQ(desktop.performed.size(), 2u);
    EXPECT_FALSE(desktop.menuIsOpen);
  }
}

TEST_F(ActivationTest, ADismissedMenuIsCancelledThroughItsItem) {
  desktop.openMenus[item] = oneEntry;
  desktop.snapshots = desktop.looseReads = 0;
  controller().activate("org.a", false, std::nullopt);
  desktop.loop.advance(50ms);
  ASSERT_TRUE(desktop.menuIsOpen);
  EXPECT_EQ(desktop.shownMenu->at.x, 1000 - 60 - 12 - 8) << "below the handle's centre";
  EXPECT_EQ(desktop.snapshots, 1);
  EXPECT_EQ(desktop.looseReads, 0);
  desktop.closeMenu({false, std::nullopt});
  EXPECT_EQ(desktop.performed.back(), std::to_string(item) + " AXCancel");

  controller().activate("org.a", false, std::nullopt);
  desktop.loop.advance(50ms);
  desktop.closeMenu({true, std::nullopt});
  EXPECT_EQ(desktop.performed.back(), pressed()) << "chosen, with nothing to press";
}

TEST_F(ActivationTest, PassOfTheTimerWaitsForTheMenuAndOthersDoNot) {
  for (const bool asked : {false, true}) {
    hide({});
    controller().unstow("org.a");
    desktop.loop.advance(31s);
    desktop.openMenus[item] = oneEntry;
    controller().activate("org.a", false, 300.0);
    desktop.loop.advance(50ms);
    hide({"org.a"});
    desktop.posted.clear();
    desktop.loop.advance(65s);
    EXPECT_TRUE(desktop.posted.empty());
    EXPECT_FALSE(controller().isEnforcing());
    if (asked) {
      controller().enforceStow();
      desktop.loop.advance(2s);
      EXPECT_TRUE(isHidden(a)) << "what the user asked for does not wait";
    }
    desktop.closeMenu({false, std::nullopt});
    EXPECT_EQ(controller().isEnforcing(), !asked);
    desktop.loop.advance(2s);
    EXPECT_TRUE(isHidden(a));
    EXPECT_EQ(boundaryLength(), 16000);
  }
}

TEST_F(ActivationTest, GivesUpAfterTwelveReadings) {
  controller().activate("org.a", false, std::nullopt);
  desktop.loop.advance(5s);
  EXPECT_EQ(desktop.menuReadings, 12);
  EXPECT_EQ(desktop.performed, std::vector{pressed()});

  desktop.openMenus[item] = oneEntry;
  desktop.screens.clear();
  controller().activate("org.a", false, std::nullopt);
  desktop.loop.advance(5s);
  EXPECT_EQ(desktop.shownMenu.has_value(), false) << "nowhere to show it";
}

TEST_F(ActivationTest, OnlyTheLastActivationShowsItsMenu) {
  const auto b = desktop.launch("org.b", {30});
  controller().activate("org.a", false, 100.0);
  desktop.loop.advance(75ms);
  controller().activate("org.b", false, 200.0);
  desktop.openMenus[item] = oneEntry;
  desktop.openMenus[desktop.itemsOf(b)[0]] = oneEntry;
  desktop.loop.advance(49ms);
  EXPECT_FALSE(desktop.menuIsOpen) << "the first watch is over, the second has not read yet";
  desktop.loop.advance(1ms);
  ASSERT_TRUE(desktop.menuIsOpen);
  EXPECT_EQ(desktop.shownMenu->at.x, 192);
}

TEST_F(ActivationTest, WithoutAnItemOrPermissionOnlyThePanelCloses) {
  for (const bool trusted : {true, false}) {
    desktop.trusted = trusted;
    controller().togglePanel();
    controller().activate(trusted ? "org.none" : "org.a", false, std::nullopt);
    EXPECT_FALSE(desktop.panelWindow->visible);
    desktop.loop.advance(1s);
    EXPECT_TRUE(desktop.performed.empty());
    EXPECT_EQ(desktop.menuReadings, 0);
  }
}

}  // namespace
}  // namespace tarnwick
