// The temporary reveal, the panel toggle and the pass that pictures hidden items.

#include <algorithm>
#include <chrono>
#include <utility>

#include "hiding/menu_bar_controller.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr auto pauseAfterExpanding = 250ms;  // for the bar to lay everything out in view

}  // namespace

void MenuBarController::revealTemporarily(Duration length) {
  setCollapsed(false);
  collapseBackTask_.cancel();
  collapseBackTask_ = endOfReveal(desktop_.loop, shared_from_this(), length);
}

Task MenuBarController::endOfReveal(MainLoop&, Self self, Duration length) {
  co_await sleepFor(length);
  const bool cancelled = co_await isCancelled();
  if (cancelled) co_return;
  self->enforceStow();
}

void MenuBarController::togglePanel() {
  if (!panel_) return;
  const auto anchor = handleFrame();
  if (panel_->isVisible()) {
    panel_->close();
  } else {
    panel_->show(anchor);
  }
}

void MenuBarController::captureHiddenIcons() {
  if (!desktop_.accessibility.isProcessTrusted() || !desktop_.windowCapture.preflight()) return;
  BundleIds hidden = hiddenSet();
  if (hidden.empty()) return;
  auto missing = scanner_.scan();
  std::erase_if(missing, [&](const MenuBarItemInfo& item) {
    if (!hidden.contains(item.bundleId) || capturer_->cachedIcon(item.bundleId)) return true;
    return !isOnScreen(item.frame) && std::ranges::count(unpictured_, item.element) != 0;
  });
  if (missing.empty()) return;
  if (std::all_of(missing.begin(), missing.end(),
                  [](const MenuBarItemInfo& item) { return isOnScreen(item.frame); })) {
    capturer_->captureAll(std::move(missing));
    return;
  }
  setCollapsed(false);
  collapseBackTask_.cancel();
  collapseBackTask_ = revealCapture(desktop_.loop, shared_from_this(), std::move(hidden));
}

// Cancelling cuts the pause short; the pictures are taken and the items hidden again all the same.
Task MenuBarController::revealCapture(MainLoop&, Self self, BundleIds hidden) {
  co_await sleepFor(pauseAfterExpanding);
  auto items = self->scanner_.scan();
  std::erase_if(items,
                [&](const MenuBarItemInfo& item) { return !hidden.contains(item.bundleId); });
  auto visible = items;
  std::erase_if(visible, [](const MenuBarItemInfo& item) { return !isOnScreen(item.frame); });
  const bool refused = self->capturer_->isCapturing();
  const Task capture = self->capturer_->captureAll(std::move(visible));
  co_await capture;
  if (!refused) self->unpictured_.clear();
  for (const MenuBarItemInfo& item : items) {
    const bool pictured = self->capturer_->cachedIcon(item.bundleId).has_value();
    if (!refused && !pictured) self->unpictured_.push_back(item.element);
  }
  self->enforceStow();
}

}  // namespace tarnwick
