#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/shortcuts/keyboard_shortcuts.h"
#include "tests/core/fake_desktop.h"
#include "tests/core/fake_keyboard.h"

namespace tarnwick::test {

// The shortcut module on a keyboard in memory.
class ShortcutsTest : public testing::Test {
 protected:
  using Name = KeyboardShortcuts::Name;
  using Shortcut = KeyboardShortcuts::Shortcut;
  using Key = KeyboardShortcuts::Key;

  static constexpr FakeKeyboard::Combination commandK{40, KeyModifiers::command};
  static constexpr FakeKeyboard::Combination commandJ{38, KeyModifiers::command};

  std::function<void()> note(const std::string& text) {
    return [this, text] { log.push_back(text); };
  }
  // What was noted since the last call.
  std::vector<std::string> noted() { return std::exchange(log, {}); }
  void strike(FakeKeyboard::Combination combination) {
    keyboard.press(combination);
    keyboard.release(combination);
  }
  void openMenu() { notifications.post({menuDidBeginTracking, {}}); }
  void closeMenu() { notifications.post({menuDidEndTracking, {}}); }

  const Shortcut k{Key::k, KeyModifiers::command};
  const Shortcut j{Key::j, KeyModifiers::command};
  FakeDesktop desktop;
  FakeKeyboard keyboard;
  NotificationCenter notifications;
  std::vector<std::string> log;
  Registration module =
      KeyboardShortcuts::use({desktop.loop, desktop, keyboard, keyboard, notifications});
};

}  // namespace tarnwick::test
