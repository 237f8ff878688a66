#include "core/hiding/menu_bar_controller.h"

#include <chrono>
#include <utility>

#include "core/hiding/app_state.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr const char* handleAutosaveName = "tarnwick.handle";
constexpr const char* boundaryAutosaveName = "tarnwick.boundary";
constexpr auto firstPassDelay = 1s;
constexpr auto passAfterLaunchDelay = 3s;
constexpr auto enforcementInterval = 30s;

}  // namespace

MenuBarController::MenuBarController(Desktop& desktop, Preferences preferences,
                                     std::shared_ptr<StatusIconCapturer> capturer,
                                     std::function<void()> onOpenSettings)
    : desktop_(desktop),
      preferences_(preferences),
      capturer_(std::move(capturer)),
      onOpenSettings_(std::move(onOpenSettings)),
      scanner_(desktop.accessibility, desktop.workspace, desktop.application),
      mover_(desktop.loop, desktop.pointer, scanner_),
      record_(preferences) {}

void MenuBarController::start() {
  // The bar places a new item left of those there: the boundary after the handle comes to lie
  // immediately left of it.
  handle_ = makeItem(SeparatorRole::handle, handleAutosaveName);
  boundary_ = makeItem(SeparatorRole::boundary, boundaryAutosaveName);
  setCollapsed(!preferences_.hiddenBundleIds().empty());
  panel_ = std::make_shared<PanelController>(desktop_, weak_from_this(), preferences_, capturer_);

  itemsObserver_ = desktop_.statusBar.onItemsPlaced([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self && self->restoreBoundary()) self->putInOrder();
  });
  launchObserver_ = desktop_.workspace.onApplicationLaunched(
      [&loop = desktop_.loop, weak = weak_from_this()] { passAfterLaunch(loop, weak); });
  enforcementTimer_ =
      desktop_.loop.callEvery(enforcementInterval, [&loop = desktop_.loop] { passOfTimer(loop); });
  firstPass(desktop_.loop, shared_from_this());
}

Task MenuBarController::passAfterLaunch(MainLoop&, std::weak_ptr<MenuBarController> controller) {
  co_await sleepFor(passAfterLaunchDelay);
  if (const auto self = controller.lock()) self->putInOrder();
}

Task MenuBarController::passOfTimer(MainLoop&) {
  const auto self = AppState::controller.lock();
  if (!self) co_return;
  if (self->openMenus_ > 0) {
    self->passWaits_ = true;  // it would move items while the user is choosing
  } else {
    self->putInOrder();
  }
}

Task MenuBarController::firstPass(MainLoop&, Self self) {
  co_await sleepFor(firstPassDelay);
  self->putInOrder();
}

// A release ends in a stow pass of its own. A reveal or a menu that the user has just asked for is
// not ended for a release.
void MenuBarController::putInOrder() {
  if (!mayRelease() || !releaseOwed()) enforceStow();
}

void MenuBarController::refreshPanel() {
  if (panel_ && panel_->isVisible()) panel_->applyContent();
}

void MenuBarController::refreshHandleIcon() {
  if (handle_) handle_->applyHandleStyle(preferences_.handleIconStyle());
}

Registration MenuBarController::onEnforcingChanged(std::function<void()> callback) {
  return enforcingChanged_.add(std::move(callback));
}

std::unique_ptr<SeparatorItem> MenuBarController::makeItem(SeparatorRole role,
                                                           const std::string& autosaveName) {
  return std::make_unique<SeparatorItem>(role, autosaveName, desktop_.statusBar, desktop_.screens,
                                         preferences_,
                                         [weak = weak_from_this()](const ClickEvent& event) {
                                           if (const auto self = weak.lock())
                                             self->handleClicked(event);
                                         });
}

void MenuBarController::handleClicked(const ClickEvent& event) {
  if (event.type == ClickType::rightMouseUp) {
    onOpenSettings_();
  } else {
    togglePanel();
  }
}

MenuBarController::BundleIds MenuBarController::hiddenSet() const {
  const auto stored = preferences_.hiddenBundleIds();
  return {stored.begin(), stored.end()};
}

void MenuBarController::setCollapsed(bool collapsed) {
  if (boundary_) boundary_->setCollapsed(collapsed);
}

// A handle left of the boundary would go out of sight with what is hidden. The boundary is moved,
// and what stood between the two comes into view: only a stow pass can tell what of it is to be out
// of sight. On the boundary's right the handle may stand where the user likes.
bool MenuBarController::restoreBoundary() {
  if (!isHandleStranded()) return false;
  boundary_->placeLeftOf(*handle_);
  return true;
}

bool MenuBarController::isHandleStranded() const {
  const auto snapshot = desktop_.accessibility.takeSnapshot();  // both frames of one moment
  const auto handle = handleFrame();
  const auto boundary = boundaryFrame();
  return handle && boundary && handle->minX() < boundary->minX();
}

std::optional<Rect> MenuBarController::boundaryFrame() const {
  return boundary_ ? boundary_->screenFrameTopLeft() : std::nullopt;
}

std::optional<Rect> MenuBarController::handleFrame() const {
  return handle_ ? handle_->screenFrameTopLeft() : std::nullopt;
}

// Those applications' items, in scan order.
std::vector<MenuBarItemInfo> MenuBarController::itemsOf(const BundleIds& bundleIds) const {
  auto items = scanner_.scan();
  std::erase_if(items,
                [&](const MenuBarItemInfo& item) { return !bundleIds.contains(item.bundleId); });
  return items;
}

void MenuBarController::setEnforcing(bool enforcing) {
  if (std::exchange(isEnforcing_, enforcing) != enforcing) enforcingChanged_.notify();
}

}  // namespace tarnwick
