#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/app/app_delegate.h"
#include "core/capture/status_icon_capturer.h"
#include "core/hiding/app_state.h"
#include "core/hiding/menu_bar_controller.h"
#include "core/shortcuts/keyboard_shortcuts.h"
#include "tests/core/fake_desktop.h"
#include "tests/core/fake_keyboard.h"

namespace tarnwick::test {

inline constexpr const char* handle = "tarnwick.handle";
inline constexpr const char* boundary = "tarnwick.boundary";

// The whole core on the fake desktop: a story begins with start().
struct Story {
  Story() { desktop.capture.allowed = false; }
  ~Story() { AppState::controller.reset(); }

  void hide(std::vector<std::string> bundleIds) {
    desktop.defaults["hiddenBundleIds"] = std::move(bundleIds);
  }
  // The application launches; the first pass is a second away.
  void start() { delegate->applicationDidFinishLaunching(); }
  MenuBarController& controller() { return *delegate->menuBarController(); }

  double boundaryLength() const { return desktop.ownLength(boundary); }
  bool isHidden(std::int32_t pid) const {
    for (const auto id : desktop.itemsOf(pid)) {
      if (desktop.frameOf(id).midX() > 0) return false;
    }
    return true;
  }
  int drags() const { return static_cast<int>(desktop.posted.size() / 8); }

  FakeDesktop desktop;
  FakeKeyboard keyboard;
  NotificationCenter notifications;
  Registration shortcuts =
      KeyboardShortcuts::use({desktop.loop, desktop, keyboard, keyboard, notifications});
  Desktop services = desktop.services();
  std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(services);
};

class StoryTest : public testing::Test, protected Story {};

inline std::shared_ptr<StatusIconCapturer> capturerOf(FakeDesktop& desktop) {
  return std::make_shared<StatusIconCapturer>(desktop.loop, desktop.capture, desktop.capture);
}

}  // namespace tarnwick::test
