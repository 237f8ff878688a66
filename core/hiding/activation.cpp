// Pressing a hidden item and replaying the menu that it opens.

#include <chrono>
#include <utility>

#include "core/hiding/menu_bar_controller.h"
#include "core/menubar/proxy_menu.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr float pressTimeout = 0.15F;  // seconds
constexpr auto readingInterval = 50ms;
constexpr int lastReading = 11;
constexpr Point menuOffset{-8.0, 2.0};  // from the anchor's x and the bar's lower edge

}  // namespace

void MenuBarController::activate(const std::string& bundleId, bool /*rightClick*/,
                                 std::optional<double> anchorX) {
  if (panel_) panel_->close();
  if (!desktop_.accessibility.isProcessTrusted()) return;
  const auto snapshot = desktop_.accessibility.takeSnapshot();  // one round trip for all of this
  const auto items = scanner_.scan(bundleId);
  if (items.empty()) return;
  // Where the handle is now, while the snapshot has it, is where the menu will come up: whatever of
  // ours moves the row before then ends the wait for the menu.
  if (!anchorX) {
    if (const auto handle = handleFrame()) anchorX = handle->midX();
  }
  const AXElement& item = items.front().element;
  desktop_.accessibility.setMessagingTimeout(item, pressTimeout);
  if (const auto place = proxyMenuPlace(anchorX)) desktop_.accessibility.suggestPlace(item, *place);
  desktop_.accessibility.perform(item, ax::press);
  collapseBackTask_.cancel();
  collapseBackTask_ = menuWatch(desktop_.loop, shared_from_this(), item, anchorX);
}

Task MenuBarController::menuWatch(MainLoop&, Self self, AXElement item,
                                  std::optional<double> anchorX) {
  std::vector<ProxyMenuEntry> entries;
  for (int attempt = 0; entries.empty() && attempt <= lastReading; ++attempt) {
    co_await sleepFor(readingInterval);
    entries = readMenuEntries(self->desktop_.accessibility, item, 0);
  }
  const bool cancelled = co_await isCancelled();
  if (cancelled) co_return;
  const auto place = self->proxyMenuPlace(anchorX);
  if (entries.empty() || !place) {
    self->menuWatchEnded(false);
    co_return;
  }

  const Menu menu = buildMenu(entries);
  Registration open;
  const Answer<MenuOutcome> tracking{
      [&](auto callback) { open = self->desktop_.menus.popUp(menu, *place, std::move(callback)); }};
  ++self->openMenus_;
  const MenuOutcome outcome = co_await tracking;
  if (outcome.representedObject) {
    self->desktop_.accessibility.perform(*outcome.representedObject, ax::press);
  } else if (!outcome.itemChosen) {
    self->desktop_.accessibility.perform(item, ax::cancel);
  }
  --self->openMenus_;
  const bool replaced = co_await isCancelled();
  self->menuWatchEnded(replaced);
}

// What had to wait for the user to choose.
void MenuBarController::menuWatchEnded(bool replaced) {
  if (!replaced) collapseBackTask_ = {};
  if (openMenus_ > 0) return;
  if (std::exchange(passWaits_, false)) {
    putInOrder();
  } else if (mayRelease()) {
    releaseOwed();
  }
}

// Top-left corner of a proxy menu; absent without a screen.
std::optional<Point> MenuBarController::proxyMenuPlace(std::optional<double> anchorX) const {
  const auto screens = desktop_.screens.all();
  if (screens.empty()) return std::nullopt;
  double x = screens.front().frame.midX();
  if (anchorX) {
    x = *anchorX;
  } else if (const auto handle = handleFrame()) {
    x = handle->midX();
  }
  return Point{x + menuOffset.x, screens.front().visibleFrame.minY() + menuOffset.y};
}

}  // namespace tarnwick
