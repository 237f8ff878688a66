#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/capture/status_icon_capturer.h"
#include "core/ports/desktop.h"
#include "core/ports/panel_window.h"
#include "core/ports/task.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

// What the panel asks of whoever owns it.
class PanelOwner {
 public:
  virtual ~PanelOwner() = default;
  // The user pressed the entry of that application; `anchorX` is its centre on the screen.
  virtual void activate(const std::string& bundleId, bool rightClick,
                        std::optional<double> anchorX) = 0;
  // Take missing pictures of hidden items.
  virtual void captureHiddenIcons() = 0;
};

// The panel of hidden applications below the handle: its window is made on first use and kept.
class PanelController : public std::enable_shared_from_this<PanelController> {
 public:
  PanelController(Desktop& desktop, std::weak_ptr<PanelOwner> owner, Preferences preferences,
                  std::shared_ptr<StatusIconCapturer> capturer);

  // Opens the panel below the handle's frame; without one, below that of the last time. Called only
  // while it is closed.
  void show(std::optional<Rect> below);
  // Closing a closed panel does nothing.
  void close();
  // Builds the content anew, and sizes and places the window for it.
  void applyContent();
  bool isVisible() const { return panel_ && panel_->isVisible(); }

 private:
  static Task refreshPictures(MainLoop& loop, std::weak_ptr<PanelController> controller);
  static Task closeSoon(MainLoop& loop, std::weak_ptr<PanelController> controller);

  PanelWindow& ensure();
  void place(PanelWindow& window);

  Desktop& desktop_;
  const std::weak_ptr<PanelOwner> owner_;
  const Preferences preferences_;
  const std::shared_ptr<StatusIconCapturer> capturer_;
  std::unique_ptr<PanelWindow> panel_;
  std::optional<Rect> lastAnchorFrame_;
  bool hasMainScreen_ = false;        // when it was shown; too dear for each refresh
  Registration outsideClickMonitor_;  // present while the panel is shown
  Registration barWatch_;             // likewise: a panel below no handle goes away
};

}  // namespace tarnwick
