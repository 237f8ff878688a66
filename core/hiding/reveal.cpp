// The temporary reveal, the panel toggle and the pass that pictures hidden items.

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/hiding/menu_bar_controller.h"

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
  self->collapseBackTask_ = {};
  self->putInOrder();
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
    return !isOnScreen(item.frame) && unpictured_.isHopeless(item.element);
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
  const auto items = self->itemsOf(hidden);
  auto visible = items;
  std::erase_if(visible, [](const MenuBarItemInfo& item) { return !isOnScreen(item.frame); });
  const bool refused = self->capturer_->isCapturing() || !self->desktop_.windowCapture.preflight();
  const Task capture = self->capturer_->captureAll(std::move(visible));
  co_await capture;
  self->unpictured_.keepOnly(items);
  for (const MenuBarItemInfo& item : items) {
    const bool pictured = self->capturer_->cachedIcon(item.bundleId).has_value();
    if (pictured || !refused) self->unpictured_.note(item.element, pictured);
  }
  const bool cancelled = co_await isCancelled();
  if (!cancelled) self->collapseBackTask_ = {};
  self->putInOrder();
}

}  // namespace tarnwick
