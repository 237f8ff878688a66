#include "core/app/app_delegate.h"

#include <chrono>

#include "core/hiding/app_state.h"
#include "core/shortcuts/keyboard_shortcuts.h"

namespace tarnwick {

namespace {

constexpr std::chrono::seconds revealLength{15};

}  // namespace

void AppDelegate::applicationDidFinishLaunching() {
  desktop_.application.setActivationPolicy(ActivationPolicy::accessory);
  menuBarController()->start();
  AppState::controller = menuBarController();
  storeFollower_ = std::make_unique<StoreFollower>(desktop_.defaults, menuBarController());
  bindShortcuts();
}

void AppDelegate::bindShortcuts() {
  using KeyboardShortcuts::Name;
  KeyboardShortcuts::onKeyUp(Name::togglePanel(), [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->menuBarController()->togglePanel();
  });
  KeyboardShortcuts::onKeyUp(Name::revealEverything(), [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->menuBarController()->revealTemporarily(revealLength);
  });
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
