#include "core/panel/panel_controller.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/panel/panel_view.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr double screenMargin = 8;  // points between the panel and the screen's sides
constexpr double anchorGap = 4;     // points below the handle
constexpr auto pictureRefreshDelay = 2s;

// The one that the anchor's centre stands on, else the primary one.
const Screen& screenOf(const std::vector<Screen>& screens, const std::optional<Rect>& anchor) {
  const auto found = std::find_if(screens.begin(), screens.end(), [&](const Screen& screen) {
    return anchor && screen.frame.contains({anchor->midX(), anchor->midY()});
  });
  return found == screens.end() ? screens.front() : *found;
}

}  // namespace

PanelController::PanelController(Desktop& desktop, std::weak_ptr<PanelOwner> owner,
                                 Preferences preferences,
                                 std::shared_ptr<StatusIconCapturer> capturer)
    : desktop_(desktop),
      owner_(std::move(owner)),
      preferences_(preferences),
      capturer_(std::move(capturer)) {}

void PanelController::show(std::optional<Rect> below) {
  if (below) lastAnchorFrame_ = below;
  hasMainScreen_ = desktop_.screens.main().has_value();
  applyContent();
  ensure().orderFrontRegardless();
  if (preferences_.panelIconStyle() == PanelIconStyle::statusIcon) {
    if (const auto owner = owner_.lock()) owner->captureHiddenIcons();
    refreshPictures(desktop_.loop, weak_from_this());
  }
  outsideClickMonitor_ = desktop_.eventMonitors.addGlobalPressMonitor(
      [&loop = desktop_.loop, weak = weak_from_this()] { closeSoon(loop, weak); });
  barWatch_ = desktop_.statusBar.onVanished(
      [&loop = desktop_.loop, weak = weak_from_this()] { closeSoon(loop, weak); });
}

void PanelController::close() {
  if (panel_) panel_->orderOut();
  outsideClickMonitor_.reset();
  barWatch_.reset();
}

Task PanelController::refreshPictures(MainLoop&, std::weak_ptr<PanelController> controller) {
  co_await sleepFor(pictureRefreshDelay);
  const auto self = controller.lock();
  if (self && self->isVisible()) self->applyContent();
}

Task PanelController::closeSoon(MainLoop&, std::weak_ptr<PanelController> controller) {
  if (const auto self = controller.lock()) self->close();
  co_return;
}

void PanelController::applyContent() {
  PanelView view;
  view.columns = preferences_.panelColumns();
  view.sections = buildSections(preferences_, desktop_.workspace, *capturer_);
  view.statusStyle = preferences_.panelIconStyle() == PanelIconStyle::statusIcon;
  view.onTap = [weak = weak_from_this()](const std::string& bundleId, bool rightClick,
                                         std::optional<double> anchorX) {
    const auto self = weak.lock();
    const auto owner = self ? self->owner_.lock() : nullptr;
    if (owner) owner->activate(bundleId, rightClick, anchorX);
  };
  PanelWindow& window = ensure();
  window.setRootView(view);
  place(window);
}

PanelWindow& PanelController::ensure() {
  if (!panel_) panel_ = desktop_.panelWindows.makePanelWindow();
  return *panel_;
}

// The panel's right edge lines up with the handle's, on the handle's monitor. What is larger than
// that monitor below the handle scrolls.
void PanelController::place(PanelWindow& window) {
  Size size = window.fittingSize();
  const auto screens = desktop_.screens.all();
  if (screens.empty()) return window.setContentSize(size);
  const Screen& screen = screenOf(screens, lastAnchorFrame_);
  const Rect& visible = screen.visibleFrame;
  const double top = lastAnchorFrame_ ? lastAnchorFrame_->maxY() + anchorGap : visible.minY();
  size.width = std::min(size.width, visible.width - 2 * screenMargin);
  size.height = std::min(size.height, std::max(0.0, visible.maxY() - top - screenMargin));
  window.setContentSize(size);
  if (!lastAnchorFrame_) return;
  const double anchored = lastAnchorFrame_->maxX() - size.width;
  const double rightmost =
      (hasMainScreen_ ? visible : *lastAnchorFrame_).maxX() - size.width - screenMargin;
  const double leftmost = screen.frame.minX() + screenMargin;
  window.setTopLeft({std::max(std::min(rightmost, anchored), leftmost), top});
}

}  // namespace tarnwick
