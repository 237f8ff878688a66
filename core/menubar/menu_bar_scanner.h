#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/menubar/menu_bar_item_info.h"
#include "core/ports/accessibility.h"
#include "core/ports/application.h"
#include "core/ports/workspace.h"

namespace tarnwick {

// Finds other applications' status items. Keeps nothing: every call asks the desktop afresh and
// blocks for that one round trip.
class MenuBarScanner {
 public:
  MenuBarScanner(Accessibility& accessibility, Workspace& workspace, Application& application)
      : accessibility_(accessibility), workspace_(workspace), application_(application) {}

  // Every other application's items, or those of the application with exactly the bundle identifier
  // `only`: applications in the desktop's order, each one's items in its own order. Empty when
  // there are none and when this process is not trusted.
  std::vector<MenuBarItemInfo> scan(const std::optional<std::string>& only = std::nullopt) const;

  // The item's present frame; absent when it cannot be read.
  std::optional<Rect> frame(const AXElement& of) const;

 private:
  std::vector<AXElement> statusItems(std::int32_t pid) const;
  std::optional<Rect> readFrame(const AXElement& of) const;

  Accessibility& accessibility_;
  Workspace& workspace_;
  Application& application_;
};

}  // namespace tarnwick
