#pragma once

#include <optional>

#include "common/menus/client/menu_types.h"

namespace tarnwick {

// The id under which to press what was shown as entry `id` of `shown`, now that the menu is
// `present`; absent when there is no such entry any more or it cannot be chosen now.
//
// From the root down, an entry is the one of its id as long as no title of its level has come under
// another id. Else it is the entry at the same place among equally many of the same title. Where
// its title is gone the id counts only if the level is as long as it was, or if both neighbours are
// still there under their ids and titles (the ends of the level count as neighbours). Nothing is
// pressed rather than another entry.
std::optional<int> presentId(const MenuEntry& shown, const MenuEntry& present, int id);

}  // namespace tarnwick
