#pragma once

#include <QRect>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "core/ports/panel_window.h"

namespace tarnwick {

// Panels as override-redirect windows: the window manager neither focuses, moves nor hides them,
// and they lie above docks on every desktop. Under a compositor they have smooth rounded corners
// and a shadow, else corners cut by shape.
class QtPanelWindows : public PanelWindows {
 public:
  struct Effects {
    // Whether a compositor runs now.
    std::function<bool()> isComposited;
    // Cuts a window to a rounded rectangle or, with nothing, gives it its whole shape again. In
    // device pixels of the window.
    std::function<void(WId, const std::optional<QRect>&, int cornerRadius)> cut;
  };
  explicit QtPanelWindows(Effects effects) : effects_(std::move(effects)) {}

  std::unique_ptr<PanelWindow> makePanelWindow() override;

 private:
  Effects effects_;
};

}  // namespace tarnwick
