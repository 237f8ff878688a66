#pragma once

#include <QWidget>

namespace tarnwick::bar::x11 {

// Shows a window of ours to the user, wherever it was: minimised, on another desktop (it comes to
// the present one) or behind others. Its WA_ShowWithoutActivating says whether it leaves the
// keyboard where that is; else it is activated as by a pager (_NET_ACTIVE_WINDOW), whatever the
// user works in.
void bringToUser(QWidget& window);

}  // namespace tarnwick::bar::x11
