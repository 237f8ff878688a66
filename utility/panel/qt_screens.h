#pragma once

#include <QPoint>
#include <QRect>
#include <functional>
#include <optional>

#include "core/ports/screens.h"

class QScreen;

namespace tarnwick {

class QtScreens : public Screens {
 public:
  // Both in device pixels. `focus` tells the centre of the window with the keyboard focus, absent
  // when no window has it; `workArea` what docks leave of the whole desktop, absent when unknown.
  QtScreens(std::function<std::optional<QPoint>()> focus,
            std::function<std::optional<QRect>()> workArea)
      : focus_(std::move(focus)), workArea_(std::move(workArea)) {}

  std::vector<Screen> all() const override;
  // The primary one when no window has the focus.
  std::optional<Screen> main() const override;

 private:
  Screen describe(const QScreen& screen) const;

  std::function<std::optional<QPoint>()> focus_;
  std::function<std::optional<QRect>()> workArea_;
};

}  // namespace tarnwick
