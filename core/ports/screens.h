#pragma once

#include <optional>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick {

struct Screen {
  Rect frame;
  Rect visibleFrame;  // without the bar and other docks
};

class Screens {
 public:
  virtual ~Screens() = default;
  // The primary one, which carries the bar, comes first. Empty when none is attached.
  virtual std::vector<Screen> all() const = 0;
  // The one with the keyboard focus. Absent when there is none.
  virtual std::optional<Screen> main() const = 0;
};

}  // namespace tarnwick
