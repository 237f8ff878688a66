#pragma once

#include <memory>

#include "common/base/geometry.h"

namespace tarnwick {

struct PanelView;

// A floating window without a frame that never activates this application or takes the keyboard
// focus, lies above docks and is on all desktops. Hidden until ordered front.
class PanelWindow {
 public:
  virtual ~PanelWindow() = default;

  // Shows this view from now on, in place of the one before.
  virtual void setRootView(const PanelView& view) = 0;
  // What the present view needs to show all of itself.
  virtual Size fittingSize() const = 0;
  // A size below the fitting one makes the content scroll.
  virtual void setContentSize(Size size) = 0;
  virtual Size contentSize() const = 0;
  virtual void setTopLeft(Point point) = 0;
  virtual void orderFrontRegardless() = 0;
  virtual void orderOut() = 0;
  virtual bool isVisible() const = 0;
};

class PanelWindows {
 public:
  virtual ~PanelWindows() = default;
  [[nodiscard]] virtual std::unique_ptr<PanelWindow> makePanelWindow() = 0;
};

}  // namespace tarnwick
