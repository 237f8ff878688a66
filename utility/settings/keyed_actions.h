#pragma once

#include <QList>

#include "core/ports/main_menu.h"

class QAction;

namespace tarnwick {

// Actions with the keys they answer to and, below them, those of their menus. An action with
// several shortcuts is there once for each; chains of combinations are left out.
KeyedMenu keyedMenu(const QList<QAction*>& actions);

}  // namespace tarnwick
