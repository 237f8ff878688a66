#pragma once

#include <string>
#include <vector>

#include "core/ports/accessibility.h"
#include "core/ports/menus.h"

namespace tarnwick {

// One entry of another application's open menu.
struct ProxyMenuEntry {
  std::string title;
  bool enabled = true;
  AXElement element;  // the real entry
  std::vector<ProxyMenuEntry> children;
};

// The entries of the menu that the element, a status item at depth 0, has open: the menu and two
// levels of submenus below it. Empty when no open menu can be read.
std::vector<ProxyMenuEntry> readMenuEntries(Accessibility& accessibility, const AXElement& of,
                                            int depth);

// A menu of our own with the same titles, enabled states, separators and submenus. Every item
// without a submenu represents the real entry.
Menu buildMenu(const std::vector<ProxyMenuEntry>& entries);

}  // namespace tarnwick
