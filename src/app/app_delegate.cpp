#include "app/app_delegate.h"

#include "hiding/app_state.h"

namespace tarnwick {

void AppDelegate::applicationDidFinishLaunching() {
  desktop_.application.setActivationPolicy(ActivationPolicy::accessory);
  menuBarController()->start();
  AppState::controller = menuBarController();
}

const std::shared_ptr<MenuBarController>& AppDelegate::menuBarController() {
  if (!menuBarController_) {
    menuBarController_ = std::make_shared<MenuBarController>(
        desktop_, Preferences(desktop_.defaults),
        std::make_shared<StatusIconCapturer>(desktop_.loop, desktop_.windowCapture,
                                             desktop_.pictureFiles),
        [weak = weak_from_this()] {
          if (const auto self = weak.lock()) self->openSettings();
        });
  }
  return menuBarController_;
}

void AppDelegate::openSettings() {
  if (!settingsWindow_) {
    settingsWindow_ = desktop_.settingsWindows.makeSettingsWindow(
        std::make_shared<SettingsView>(desktop_, menuBarController()));
  }
  settingsWindow_->makeKeyAndOrderFront();
  settingsWindow_->orderFrontRegardless();
}

bool AppDelegate::applicationShouldHandleReopen(bool) {
  openSettings();
  return true;
}

}  // namespace tarnwick
