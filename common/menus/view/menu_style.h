#pragma once

class QMenu;

namespace tarnwick {

// Has a menu that is longer than the monitor scroll in one column, and show the tool tips that its
// actions were given.
void useMenuStyle(QMenu& menu);

}  // namespace tarnwick
