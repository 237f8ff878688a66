#pragma once

#include <memory>

#include "hiding/menu_bar_controller.h"
#include "platform/desktop.h"

namespace tarnwick {

// What the running application does: owns the one controller and starts it. Made by the process
// entry and kept until the process ends.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
 public:
  explicit AppDelegate(Desktop& desktop) : desktop_(desktop) {}

  // Called once when the application has finished launching.
  void applicationDidFinishLaunching();

  // The one controller, created on first use.
  const std::shared_ptr<MenuBarController>& menuBarController();

  void openSettings();

 private:
  void bindShortcuts();

  Desktop& desktop_;
  std::shared_ptr<MenuBarController> menuBarController_;
};

}  // namespace tarnwick
