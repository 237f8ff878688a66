#include "core/settings/settings_view.h"

#include <chrono>
#include <utility>

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

// Until pictures that are being taken have arrived.
constexpr auto pictureRefreshDelay = 2s;

std::set<std::string> setOf(const std::vector<std::string>& strings) {
  return {strings.begin(), strings.end()};
}

}  // namespace

SettingsView::SettingsView(Desktop& desktop, std::shared_ptr<MenuBarController> controller)
    : desktop_(desktop),
      controller_(std::move(controller)),
      preferences_(desktop.defaults),
      scanner_(desktop.accessibility, desktop.workspace, desktop.application),
      hidden_(setOf(preferences_.hiddenBundleIds())),
      panelColumns_(preferences_.panelColumns()),
      iconStyle_(preferences_.panelIconStyle()),
      handleStyle_(preferences_.handleIconStyle()),
      hasPermission_(desktop.accessibility.isProcessTrusted()),
      launchAtLogin_(desktop.loginItem.isEnabled()) {
  captureAccess_ = desktop_.windowCapture.onAccessChanged([this] { changed_.notify(); });
  storeObserver_ = desktop_.defaults.onChanged([this] { followStore(); });
}

void SettingsView::appear() {
  refreshLaunchAtLogin();
  rescan();
}

void SettingsView::setPanelColumns(int columns) {
  if (columns == panelColumns_) return;
  preferences_.setPanelColumns(columns);
  panelColumns_ = preferences_.panelColumns();
  controller_->refreshPanel();
  changed_.notify();
}

void SettingsView::setIconStyle(PanelIconStyle style) {
  if (style == iconStyle_) return;
  preferences_.setPanelIconStyle(style);
  iconStyle_ = preferences_.panelIconStyle();
  const bool pictures = style == PanelIconStyle::statusIcon && iconStyle_ == style;
  if (pictures && desktop_.windowCapture.preflight()) {
    controller_->captureHiddenIcons();
  } else if (pictures) {
    desktop_.windowCapture.request();
  }
  controller_->refreshPanel();
  if (pictures) refreshPanelLater(desktop_.loop, controller_);
  changed_.notify();
}

Task SettingsView::refreshPanelLater(MainLoop&, std::shared_ptr<MenuBarController> controller) {
  co_await sleepFor(pictureRefreshDelay);
  controller->refreshPanel();
}

bool SettingsView::showsCaptureNote() const {
  return iconStyle_ == PanelIconStyle::statusIcon && !desktop_.windowCapture.preflight();
}

void SettingsView::setHandleStyle(HandleIconStyle style) {
  if (style == handleStyle_) return;
  preferences_.setHandleIconStyle(style);
  handleStyle_ = preferences_.handleIconStyle();
  controller_->refreshHandleIcon();
  changed_.notify();
}

void SettingsView::setLaunchAtLogin(bool enabled) {
  if (enabled == launchAtLogin_) return;
  LoginItem& item = desktop_.loginItem;
  const bool done = enabled ? item.registerItem() : item.unregisterItem();
  launchAtLogin_ = done ? enabled : item.isEnabled();
  changed_.notify();
}

void SettingsView::refreshLaunchAtLogin() {
  const bool enabled = desktop_.loginItem.isEnabled();
  if (std::exchange(launchAtLogin_, enabled) != enabled) changed_.notify();
}

std::string SettingsView::versionDescription() const {
  const auto told = [&](std::string_view key) {
    return desktop_.application.bundleInfo(key).value_or("?");
  };
  return told(bundleinfo::shortVersion) + " (" + told(bundleinfo::build) + ")";
}

void SettingsView::openAccessibilitySettings() {
  desktop_.accessibility.isProcessTrusted(true);
  desktop_.systemSettings.open(SettingsPane::accessibilityPrivacy);
}

void SettingsView::openCaptureSettings() {
  desktop_.windowCapture.request();
  desktop_.systemSettings.open(SettingsPane::screenCapturePrivacy);
}

void SettingsView::openMenuBarSettings() {
  desktop_.systemSettings.open(SettingsPane::menuBar);
}

void SettingsView::restart() {
  desktop_.application.openNewInstance(
      [&application = desktop_.application] { application.terminate(); });
}

void SettingsView::quit() {
  desktop_.application.terminate();
}

}  // namespace tarnwick
