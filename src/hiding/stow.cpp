// The stow pass and the release of applications.

#include <algorithm>
#include <chrono>
#include <utility>

#include "hiding/menu_bar_controller.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr auto pauseAfterExpanding = 250ms;   // for the bar to lay everything out in view
constexpr double stowDropDistance = 12.0;     // points left of the boundary's left edge
constexpr double releaseDropDistance = 24.0;  // points right of the boundary's right edge

}  // namespace

void MenuBarController::enforceStow() {
  if (isEnforcing_) return;
  if (!desktop_.accessibility.isProcessTrusted()) return;
  BundleIds hidden = hiddenSet();
  if (hidden.empty()) {
    setCollapsed(false);
    return;
  }
  record_.add(hidden);
  restoreBoundary();
  const auto visibleHidden = onScreen(hidden).size();
  if (visibleHidden == 0) {
    setCollapsed(true);
    return;
  }
  setEnforcing(true);
  setCollapsed(false);
  movePhase(desktop_.loop, shared_from_this(), std::move(hidden), static_cast<int>(visibleHidden));
}

Task MenuBarController::movePhase(MainLoop&, Self self, BundleIds hidden, int visibleHidden) {
  {
    // However the phase ends, the next pass finds the way free.
    const Registration finish([self] {
      self->setCollapsed(true);
      self->setEnforcing(false);
    });
    co_await sleepFor(pauseAfterExpanding);
    // With everything in view, items that were stowed long ago can be pictured too.
    auto withoutPicture = self->onScreen(hidden);
    std::erase_if(withoutPicture, [&](const MenuBarItemInfo& item) {
      return self->capturer_->cachedIcon(item.bundleId).has_value();
    });
    const Task capture = self->capturer_->captureAll(std::move(withoutPicture));
    co_await capture;
    self->dragHiddenItems(hidden, visibleHidden);
    self->restoreBoundary();
  }
  // What left the hidden set meanwhile may have been dragged to the left all the same, also after
  // its release.
  auto stranded = self->strandedApplications();
  std::erase_if(stranded, [&](const std::string& bundleId) { return !hidden.contains(bundleId); });
  if (!stranded.empty() && self->mayRelease()) self->startRelease(std::move(stranded));
}

// Every drag changes the layout, so each is aimed afresh.
void MenuBarController::dragHiddenItems(const BundleIds& hidden, int atMost) {
  for (int attempts = 0; attempts < atMost; ++attempts) {
    const auto boundary = boundaryFrame();
    if (!boundary) return;
    const auto items = scanner_.scan();
    const auto misplaced =
        std::find_if(items.begin(), items.end(), [&](const MenuBarItemInfo& item) {
          return hidden.contains(item.bundleId) && isOnScreen(item.frame) &&
                 item.frame.minX() > boundary->minX();
        });
    if (misplaced == items.end()) return;
    mover_.move(*misplaced, boundary->minX() - stowDropDistance);
  }
}

void MenuBarController::unstow(const std::string& bundleId) {
  if (desktop_.accessibility.isProcessTrusted()) startRelease({bundleId});
}

bool MenuBarController::releaseOwed() {
  if (isEnforcing_ || !desktop_.accessibility.isProcessTrusted()) return false;
  auto stranded = strandedApplications();
  if (!stranded.empty()) startRelease(std::move(stranded));
  return !releasing_.empty();
}

// Applications that are owed a release, have an item left of the boundary and are not being
// released. Those whose items stand on the right are owed nothing any more; those without items
// stay in the record.
MenuBarController::BundleIds MenuBarController::strandedApplications() {
  const BundleIds owed = record_.owed(hiddenSet());
  if (owed.empty()) return {};
  const auto boundary = boundaryFrame();
  if (!boundary) return {};
  BundleIds stranded;
  BundleIds settled;
  for (const MenuBarItemInfo& item : scanner_.scan()) {
    if (!owed.contains(item.bundleId)) continue;
    (item.frame.midX() < boundary->maxX() ? stranded : settled).insert(item.bundleId);
  }
  for (const std::string& bundleId : settled) {
    if (!stranded.contains(bundleId)) record_.settle(bundleId);
  }
  std::erase_if(stranded,
                [&](const std::string& bundleId) { return releasing_.contains(bundleId); });
  return stranded;
}

// Whether the one pending task may give way to a release that nobody asks for just now.
bool MenuBarController::mayRelease() const {
  return collapseBackTask_.isDone() || !releasing_.empty();
}

void MenuBarController::startRelease(BundleIds bundleIds) {
  setCollapsed(false);
  collapseBackTask_.cancel();
  releasing_.insert(bundleIds.begin(), bundleIds.end());
  collapseBackTask_ = release(desktop_.loop, shared_from_this(), std::move(bundleIds));
}

Task MenuBarController::release(MainLoop&, Self self, BundleIds bundleIds) {
  // A release that was cancelled is still performed, only without the whole pause.
  co_await sleepFor(pauseAfterExpanding);
  self->setCollapsed(false);  // a pass may have ended meanwhile
  if (const auto boundary = self->boundaryFrame()) {
    const double rightEdge = boundary->maxX();
    for (MenuBarItemInfo& item : self->scanner_.scan()) {
      if (!bundleIds.contains(item.bundleId) || item.frame.midX() >= rightEdge) continue;
      // The drag of the application's item before this one has shifted it.
      const auto frame = self->scanner_.frame(item.element);
      if (!frame) continue;
      item.frame = *frame;
      self->mover_.move(item, rightEdge + releaseDropDistance);
    }
  }
  for (const std::string& bundleId : bundleIds) self->releasing_.erase(bundleId);
  self->enforceStow();
  // A pass looks at what has come back when it ends.
  if (!self->isEnforcing_) self->strandedApplications();
}

}  // namespace tarnwick
