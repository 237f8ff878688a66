#pragma once

#include <memory>

#include "core/hiding/menu_bar_controller.h"
#include "core/ports/desktop.h"
#include "core/settings/settings_view.h"
#include "core/settings/store_follower.h"

namespace tarnwick {

// What the running application does: owns the one controller and starts it, and the settings
// window. Made by the process entry and kept until the process ends.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
 public:
  explicit AppDelegate(Desktop& desktop) : desktop_(desktop) {}

  // Called once when the application has finished launching.
  void applicationDidFinishLaunching();

  // The one controller, created on first use.
  const std::shared_ptr<MenuBarController>& menuBarController();

  // Shows the one settings window in front of everything.
  void openSettings();
  // The user launched the application again while it runs. True: that is all there is to do.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);

 private:
  void bindShortcuts();

  Desktop& desktop_;
  std::shared_ptr<MenuBarController> menuBarController_;
  std::unique_ptr<StoreFollower> storeFollower_;    // made at launch
  std::unique_ptr<SettingsWindow> settingsWindow_;  // absent until first opened
};

}  // namespace tarnwick
