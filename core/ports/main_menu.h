#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/ports/key_event.h"

namespace tarnwick {

// An item of the application's own menus and the key it answers to.
struct KeyedMenuItem {
  std::string title;
  std::string keyEquivalent;  // in UTF-8; empty for none. A capital letter stands for shift, too
  KeyModifiers modifierMask = KeyModifiers::none;
  std::optional<std::string> boundName;  // the shortcut name whose shortcut the item bears
  std::vector<KeyedMenuItem> submenu;
};

using KeyedMenu = std::vector<KeyedMenuItem>;

}  // namespace tarnwick
