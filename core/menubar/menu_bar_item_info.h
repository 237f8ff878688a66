#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/base/geometry.h"
#include "core/ports/accessibility.h"
#include "core/ports/workspace.h"

namespace tarnwick {

// One status item of another application as a scan found it. Match items by `bundleId`; an
// application with several items has one record for each.
struct MenuBarItemInfo {
  std::string bundleId;  // of the owning application; never empty
  std::string appName;   // its localised name, else its bundle identifier
  std::int32_t pid = 0;
  AXElement element;              // the item itself
  Rect frame;                     // where it was laid out, beyond the bar's left end at negative x
  std::optional<ThemeIcon> icon;  // the application's icon, no picture of the item
};

// Whether an item with this frame is laid out inside the bar.
inline bool isOnScreen(const Rect& frame) {
  return frame.midX() > 0.0;
}

}  // namespace tarnwick
