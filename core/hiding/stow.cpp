// The stow pass and the release of applications.

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/hiding/menu_bar_controller.h"

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
    record_.save();
    setCollapsed(false);
    return;
  }
  auto snapshot = desktop_.accessibility.takeSnapshot();  // one round trip for all of this
  if (restoreBoundary()) snapshot.reset();
  auto items = itemsOf(hidden);
  StowRecord::Counts counts;
  for (const std::string& bundleId : hidden) counts[bundleId] = 0;
  for (const MenuBarItemInfo& item : items) ++counts[item.bundleId];
  record_.add(counts);
  const auto visibleHidden = std::ranges::count_if(
      items, [](const MenuBarItemInfo& item) { return isOnScreen(item.frame); });
  if (visibleHidden == 0) {
    setCollapsed(true);
    return;
  }
  setEnforcing(true);
  setCollapsed(false);
  movePhase(desktop_.loop, shared_from_this(), std::move(hidden), static_cast<int>(visibleHidden));
}

Task MenuBarController::movePhase(MainLoop&, Self self, BundleIds hidden, int visibleHidden) {
  bool boundaryMoved = false;
  {
    // However the phase ends, the bar is collapsed and the next pass may run.
    const Registration finish([self] {
      self->setCollapsed(true);
      self->setEnforcing(false);
    });
    co_await sleepFor(pauseAfterExpanding);
    // With everything in view, items that were stowed long ago can be pictured too.
    auto withoutPicture = self->itemsOf(hidden);
    std::erase_if(withoutPicture, [&](const MenuBarItemInfo& item) {
      return !isOnScreen(item.frame) || self->capturer_->cachedIcon(item.bundleId);
    });
    const Task capture = self->capturer_->captureAll(std::move(withoutPicture));
    co_await capture;
    self->dragHiddenItems(hidden, visibleHidden);
    boundaryMoved = self->restoreBoundary();
  }
  // What left the hidden set meanwhile may have been dragged to the left all the same, also after
  // its release.
  auto stranded = self->strandedApplications();
  if (!stranded.empty() && self->mayRelease()) {
    self->startRelease(std::move(stranded));
  } else if (boundaryMoved && !self->isHandleStranded()) {
    self->enforceStow();  // for the stowed items that now stand on the boundary's right
  }
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
  if (!desktop_.accessibility.isProcessTrusted()) return;
  unmoved_.clear();  // who asks again expects another try
  startRelease({bundleId});
}

bool MenuBarController::releaseOwed() {
  if (isEnforcing_ || !desktop_.accessibility.isProcessTrusted()) return false;
  auto stranded = strandedApplications();
  if (!stranded.empty()) startRelease(std::move(stranded));
  return !releasing_.empty();
}

// Applications that are owed a release, have an item left of the boundary that can be moved and are
// not being released. Those all of whose items stand on the right are owed nothing any more; those
// that miss one stay in the record.
MenuBarController::BundleIds MenuBarController::strandedApplications() {
  record_.save();
  const auto owed = record_.owed(hiddenSet());
  if (owed.empty()) return {};
  const auto snapshot = desktop_.accessibility.takeSnapshot();
  const auto boundary = boundaryFrame();
  if (!boundary) return {};
  const auto items = scanner_.scan();
  unmoved_.keepOnly(items);
  StowRecord::Counts onTheRight;
  BundleIds onTheLeft;
  BundleIds stranded;
  for (const MenuBarItemInfo& item : items) {
    if (!owed.contains(item.bundleId)) continue;
    if (item.frame.midX() >= boundary->maxX()) {
      unmoved_.note(item.element, true);
      ++onTheRight[item.bundleId];
      continue;
    }
    onTheLeft.insert(item.bundleId);
    const bool waits = releasing_.contains(item.bundleId);
    if (!waits && !unmoved_.isHopeless(item.element)) stranded.insert(item.bundleId);
  }
  for (const auto& [bundleId, count] : onTheRight) {
    if (count >= owed.at(bundleId) && !onTheLeft.contains(bundleId)) record_.settle(bundleId);
  }
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
      self->unmoved_.note(item.element, false);  // until it is seen on the right
      self->mover_.move(item, rightEdge + releaseDropDistance);
    }
  }
  for (const std::string& bundleId : bundleIds) self->releasing_.erase(bundleId);
  self->enforceStow();
  // What has come back is taken out of the record; a pass that moves items does so at its end.
  if (!self->isEnforcing_) self->strandedApplications();
}

}  // namespace tarnwick
