#pragma once

#include <QRect>
#include <QWidget>

namespace tarnwick::bar::x11 {

// Makes a window, shown or not, a dock of the window manager at the top of the primary monitor:
// never focused, on all desktops, with room reserved for it (_NET_WM_STRUT_PARTIAL), and reached by
// Super + left button also over foreign windows inside it. Sets its geometry; to be called again
// when that or the monitor changes. `framePoints` counts from the primary monitor's top-left
// corner. Does nothing without an X server.
void makeDock(QWidget& window, QRect framePoints);

// Shows the dock, and asks for it again when it does not come up.
void showDock(QWidget& window);

}  // namespace tarnwick::bar::x11
