#pragma once

#include <QString>

class QMenu;

namespace tarnwick {

// Has a menu that is longer than the monitor scroll in one column.
void useMenuStyle(QMenu& menu);

// A title as the text of an action of that menu: no access-key marks, and cut in the middle where
// it is wider than a menu should be.
QString menuText(const QMenu& menu, const QString& title);

}  // namespace tarnwick
