#include <chrono>

#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using KeyboardShortcuts::Key;
using KeyboardShortcuts::Name;
using KeyboardShortcuts::Shortcut;

class BindingTest : public test::StoryTest {
 protected:
  BindingTest() {
    hide({"org.a"});
    a = desktop.launch("org.a", {30});
  }
  void strike(const test::FakeKeyboard::Combination& combination) {
    keyboard.press(combination);
    keyboard.release(combination);
  }
  bool panelIsOpen() const {
    return desktop.panelWindow != nullptr && desktop.panelWindow->visible;
  }

  static constexpr test::FakeKeyboard::Combination f5{96, KeyModifiers::none};
  static constexpr test::FakeKeyboard::Combination optionSpace{49, KeyModifiers::option};
  std::int32_t a = 0;
};

TEST_F(BindingTest, NothingIsBoundUntilTheUserChoosesAKey) {
  start();
  desktop.loop.advance(2s);
  EXPECT_TRUE(keyboard.registrations.empty());
  EXPECT_TRUE(KeyboardShortcuts::storedNames().empty());
  Name::togglePanel().setShortcut(Shortcut(Key::f5));
  strike(f5);
  EXPECT_TRUE(panelIsOpen());
}

TEST_F(BindingTest, StoredShortcutsWorkFromTheStartOnRelease) {
  desktop.defaults["KeyboardShortcuts_togglePanel"] = R"({"carbonKeyCode":96,"carbonModifiers":0})";
  desktop.defaults["KeyboardShortcuts_revealEverything"] =
      R"({"carbonKeyCode":49,"carbonModifiers":2048})";
  start();
  desktop.loop.advance(2s);
  keyboard.press(f5);
  EXPECT_FALSE(panelIsOpen());
  keyboard.release(f5);
  EXPECT_TRUE(panelIsOpen());
  strike(f5);
  EXPECT_FALSE(panelIsOpen());

  keyboard.press(optionSpace);
  EXPECT_TRUE(isHidden(a));
  keyboard.release(optionSpace);
  EXPECT_EQ(boundaryLength(), 2);
  desktop.loop.advance(15s - 1ms);
  EXPECT_EQ(boundaryLength(), 2);
  desktop.loop.advance(2s);
  EXPECT_EQ(boundaryLength(), 16000);

  delegate.reset();
  strike(f5);  // does nothing
}

}  // namespace
}  // namespace tarnwick
