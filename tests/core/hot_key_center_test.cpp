#include "core/shortcuts/hot_key_center.h"

#include "tests/core/shortcuts_test.h"

namespace tarnwick::test {
namespace {

using namespace KeyboardShortcuts;
using Log = std::vector<std::string>;
using Mode = HotKeyCenter::Mode;

constexpr auto command = KeyModifiers::command;
constexpr InputEvent kDown{EventKind::keyDown, 40, command, false};
constexpr InputEvent kHeld{EventKind::keyDown, 40, command, true};
constexpr InputEvent kUp{EventKind::keyUp, 40, command, false};

class HotKeyCenterTest : public ShortcutsTest {
 protected:
  HotKeyCenterTest() {
    setShortcut(k, a);
    onKeyDown(a, note("a down"));
    onKeyUp(a, note("a up"));
    desktop.loop.runPosted();
  }
  HotKeyCenter& center() { return HotKeyCenter::shared(); }

  const Name a{"a"};
  const Name b{"b"};
};

TEST_F(HotKeyCenterTest, ActionsRunInTheirOrderForEveryNameOfTheShortcut) {
  setShortcut(k, b);
  onKeyDown(a, note("a down again"));
  onKeyDown(b, note("b down"));
  onKeyUp(b, note("b up"));
  keyboard.press(commandK);
  EXPECT_EQ(noted(), (Log{"a down", "a down again", "b down"}));
  keyboard.release(commandK);
  EXPECT_EQ(noted(), (Log{"a up", "b up"}));

  disable({a});
  strike(commandK);
  EXPECT_EQ(noted(), (Log{"b down", "b up"}));
  enable({a});
  removeHandler(b);
  strike(commandK);
  EXPECT_EQ(noted(), (Log{"a down", "a down again", "a up"}));
  EXPECT_EQ(keyboard.registrations.size(), 1u) << "it was needed all the time";
  removeAllHandlers();
  EXPECT_TRUE(keyboard.registered.empty());
  strike(commandK);
  EXPECT_TRUE(noted().empty());
}

TEST_F(HotKeyCenterTest, ActionsMayChangeEverything) {
  onKeyDown(a, [this] {
    setShortcut(j, a);
    removeAllHandlers();
  });
  onKeyDown(a, note("the last of a snapshot"));
  keyboard.press(commandK);
  EXPECT_EQ(noted(), (Log{"a down", "the last of a snapshot"}));
  onKeyDown(b, [this] { module.reset(); });
  setShortcut(k, b);
  keyboard.press(commandK);
  EXPECT_TRUE(keyboard.registered.empty());
}

TEST_F(HotKeyCenterTest, EventsOfOthersAreNotHandled) {
  const auto id = keyboard.registered.at(commandK);
  EXPECT_EQ(center().handleHotKeyEvent({{0x12345678, id.id}, true}), EventStatus::notHandled);
  EXPECT_EQ(center().handleHotKeyEvent({{id.signature, id.id + 1}, true}), EventStatus::notHandled);
  EXPECT_EQ(center().handleRawKeyEvent({EventKind::leftMouseDown, 40, command, false}),
            EventStatus::notHandled);
  EXPECT_TRUE(noted().empty());
  EXPECT_EQ(center().handleHotKeyEvent({id, true}), EventStatus::handled);
}

TEST_F(HotKeyCenterTest, OpenMenuHasTheKeysWatchedOnTheirWay) {
  openMenu();
  EXPECT_EQ(center().mode(), Mode::menuOpen);
  EXPECT_TRUE(keyboard.registered.empty());
  EXPECT_FALSE(keyboard.hotKeys);
  EXPECT_TRUE(keyboard.menuKey(kDown));
  EXPECT_FALSE(keyboard.menuKey(kHeld)) << "repetitions go to the menu";
  EXPECT_TRUE(keyboard.menuKey(kUp));
  EXPECT_EQ(noted(), (Log{"a down", "a up"}));
  EXPECT_TRUE(isEnabled(a));
  const struct {
    const char* name;
    InputEvent event;
    bool swallowed;
  } cases[] = {
      {"another key", {EventKind::keyDown, 38, command, false}, false},
      {"more modifiers", {EventKind::keyDown, 40, command | KeyModifiers::shift, false}, false},
      {"no modifiers", {EventKind::keyDown, 40, KeyModifiers::none, false}, false},
      {"AltGr", {EventKind::keyDown, 40, command | KeyModifiers::unnamed, false}, false},
      {"locks", {EventKind::keyDown, 40, command | KeyModifiers::capsLock, false}, true},
  };
  for (const auto& c : cases) EXPECT_EQ(keyboard.menuKey(c.event), c.swallowed) << c.name;
  noted();

  setShortcut(j, b);
  onKeyUp(b, note("b up"));
  EXPECT_TRUE(keyboard.registered.empty()) << "paused at once";
  EXPECT_TRUE(keyboard.menuKey({EventKind::keyUp, 38, command, false}));
  EXPECT_EQ(noted(), Log{"b up"});
  closeMenu();
  EXPECT_FALSE(keyboard.menuKeys);
  EXPECT_EQ(keyboard.registered.size(), 2u);
  strike(commandK);
  EXPECT_EQ(noted(), (Log{"a down", "a up"}));
}

TEST_F(HotKeyCenterTest, ModesFollowMenusAndTheSwitch) {
  const auto id = keyboard.registered.at(commandK);
  setEnabled(false);
  EXPECT_EQ(center().mode(), Mode::disabled);
  EXPECT_TRUE(keyboard.registered.empty());
  EXPECT_FALSE(isEnabled(a));
  openMenu();
  EXPECT_EQ(center().mode(), Mode::disabled);
  EXPECT_FALSE(keyboard.menuKey(kDown));
  setEnabled(true);
  EXPECT_EQ(center().mode(), Mode::menuOpen);
  closeMenu();
  EXPECT_EQ(center().mode(), Mode::normal);
  EXPECT_EQ(keyboard.registered.at(commandK), id) << "registered afresh under its own id";
  EXPECT_TRUE(isEnabled(a));
}

TEST_F(HotKeyCenterTest, WhatAnotherProgramTookMeanwhileIsGivenUp) {
  openMenu();
  keyboard.takenByOthers = {commandK};
  closeMenu();
  EXPECT_FALSE(isEnabled(a));
  keyboard.takenByOthers.clear();
  openMenu();
  EXPECT_FALSE(keyboard.menuKey(kDown));
  closeMenu();
  EXPECT_FALSE(isEnabled(a));
  setShortcut(k, a);
  EXPECT_TRUE(isEnabled(a));
  EXPECT_EQ(keyboard.registrations.back().id, 2u) << "ids are not used again";
  openMenu();
  keyboard.takenByOthers = {commandK};
  closeMenu();
  keyboard.takenByOthers.clear();
  keyboard.layoutChanges.notify();
  EXPECT_TRUE(isEnabled(a)) << "tried again with the next map";
}

TEST_F(HotKeyCenterTest, PauseKeepsTheKeysAndCallsNothing) {
  setPaused(true);
  strike(commandK);
  EXPECT_TRUE(noted().empty());
  EXPECT_TRUE(keyboard.registered.contains(commandK));
  setPaused(false);
  strike(commandK);
  EXPECT_EQ(noted(), (Log{"a down", "a up"}));
}

}  // namespace
}  // namespace tarnwick::test
