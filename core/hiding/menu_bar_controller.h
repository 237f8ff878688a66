#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/base/callback_list.h"
#include "core/capture/status_icon_capturer.h"
#include "core/hiding/failed_items.h"
#include "core/hiding/separator_item.h"
#include "core/hiding/stow_record.h"
#include "core/menubar/item_mover.h"
#include "core/menubar/menu_bar_scanner.h"
#include "core/menubar/proxy_menu.h"
#include "core/panel/panel_controller.h"
#include "core/ports/desktop.h"
#include "core/ports/task.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

// The one object that hides and shows status items: owner of the handle and the boundary, of the
// timers that start stow passes and of the one pending task. Lives as long as the process; held by
// the application delegate.
class MenuBarController : public PanelOwner,
                          public std::enable_shared_from_this<MenuBarController> {
 public:
  // Puts nothing on the screen yet. `onOpenSettings` opens the settings window.
  MenuBarController(Desktop& desktop, Preferences preferences,
                    std::shared_ptr<StatusIconCapturer> capturer,
                    std::function<void()> onOpenSettings);

  // Creates the items and everything that starts stow passes. Called exactly once.
  void start();

  // The stow pass: brings every hidden application's items that are inside the bar to the left of
  // the boundary and out of sight. Returns at once; what is left to do runs as a task. Does nothing
  // while a pass is running (the request is dropped) and without permission.
  void enforceStow();

  // Brings the items of an application that is no longer in the hidden set back to the right of the
  // boundary, then runs a stow pass. Does nothing without permission.
  void unstow(const std::string& bundleId);

  // Brings items of applications that are no longer in the hidden set, by whatever way they left
  // it, back to the right of the boundary, then runs a stow pass. False when no release is under
  // way now: none has an item on the left, a stow pass is running or there is no permission.
  bool releaseOwed();

  // Shows every hidden item for that long, then hides them again by a stow pass. Anything that
  // stows, releases or activates meanwhile ends or extends it.
  void revealTemporarily(Duration length);

  // Opens the panel below the handle, or closes it.
  void togglePanel();

  // Takes pictures of hidden applications' items that have none, revealing them for about a quarter
  // of a second when they are out of sight; not again for items of which that got no picture twice.
  // Does nothing without both permissions.
  void captureHiddenIcons() override;

  // Presses the application's first item and shows a copy of the menu that opens, its left edge
  // near `anchorX` on the screen, below the handle when absent. The button makes no difference.
  void activate(const std::string& bundleId, bool rightClick,
                std::optional<double> anchorX) override;

  // Builds the panel's content anew if the panel is open.
  void refreshPanel();

  // Draws the handle in the stored style.
  void refreshHandleIcon();

  // A stow pass is moving items.
  bool isEnforcing() const { return isEnforcing_; }
  // Called after isEnforcing() has changed.
  Registration onEnforcingChanged(std::function<void()> callback);

 private:
  using Self = std::shared_ptr<MenuBarController>;
  using BundleIds = std::set<std::string>;

  static Task passAfterLaunch(MainLoop& loop, std::weak_ptr<MenuBarController> controller);
  static Task passOfTimer(MainLoop& loop);
  static Task firstPass(MainLoop& loop, Self self);
  static Task movePhase(MainLoop& loop, Self self, BundleIds hidden, int visibleHidden);
  static Task release(MainLoop& loop, Self self, BundleIds bundleIds);
  static Task endOfReveal(MainLoop& loop, Self self, Duration length);
  static Task revealCapture(MainLoop& loop, Self self, BundleIds hidden);
  static Task menuWatch(MainLoop& loop, Self self, AXElement item, std::optional<double> anchorX);

  std::unique_ptr<SeparatorItem> makeItem(SeparatorRole role, const std::string& autosaveName);
  void handleClicked(const ClickEvent& event);
  BundleIds hiddenSet() const;
  void putInOrder();
  void dragHiddenItems(const BundleIds& hidden, int atMost);
  void startRelease(BundleIds bundleIds);
  BundleIds strandedApplications();
  bool mayRelease() const;
  void setCollapsed(bool collapsed);
  bool restoreBoundary();
  bool isHandleStranded() const;
  std::optional<Rect> boundaryFrame() const;
  std::optional<Rect> handleFrame() const;
  std::vector<MenuBarItemInfo> itemsOf(const BundleIds& bundleIds) const;
  void menuWatchEnded(bool replaced);
  std::optional<Point> proxyMenuPlace(std::optional<double> anchorX) const;
  void setEnforcing(bool enforcing);

  Desktop& desktop_;
  const Preferences preferences_;
  const std::shared_ptr<StatusIconCapturer> capturer_;
  const std::function<void()> onOpenSettings_;
  const MenuBarScanner scanner_;
  const ItemMover mover_;
  StowRecord record_;
  FailedItems unpictured_;  // of which reveal captures got no picture
  FailedItems unmoved_;     // dragged by releases, and not seen on the boundary's right since
  BundleIds releasing_;     // applications whose release has begun and has yet to drag their items

  bool isEnforcing_ = false;
  int openMenus_ = 0;       // copies of other applications' menus on the screen
  bool passWaits_ = false;  // the timer's stow pass is due and waits until openMenus_ is 0
  CallbackList enforcingChanged_;
  std::unique_ptr<SeparatorItem> handle_;
  std::unique_ptr<SeparatorItem> boundary_;
  std::shared_ptr<PanelController> panel_;
  Registration itemsObserver_;
  Registration launchObserver_;
  Registration enforcementTimer_;
  Task collapseBackTask_;  // whoever stores one here cancels the one before
};

}  // namespace tarnwick
