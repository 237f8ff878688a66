#pragma once

#include <optional>

#include "dbusmenu/menu_types.h"

namespace tarnwick {

// The id under which to press what was shown as entry `id` of `shown`, now that the menu is
// `present`; absent when there is no such entry any more or it cannot be chosen now.
//
// From the root down, an entry is the one of its id, whatever its label says by now, as long as
// its level shows no sign of new numbers: no title has come under another id, and the level is as
// long as it was or an entry further down is still there under its id and title. Else it is the
// entry at the same place among equally many of the same title; nothing is pressed rather than
// another entry.
std::optional<int> presentId(const MenuEntry& shown, const MenuEntry& present, int id);

}  // namespace tarnwick
