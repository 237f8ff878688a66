#pragma once

#include <functional>
#include <memory>

#include "platform/panel_window.h"

namespace tarnwick {

// Panels as override-redirect windows: the window manager neither focuses, moves nor hides them,
// and they lie above docks on every desktop. Under a compositor they have smooth rounded corners
// and a shadow, else corners cut by shape.
class QtPanelWindows : public PanelWindows {
 public:
  // `isComposited` tells whether a compositor runs now.
  explicit QtPanelWindows(std::function<bool()> isComposited)
      : isComposited_(std::move(isComposited)) {}

  std::unique_ptr<PanelWindow> makePanelWindow() override;

 private:
  std::function<bool()> isComposited_;
};

}  // namespace tarnwick
