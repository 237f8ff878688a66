#pragma once

#include <QPoint>
#include <QRect>
#include <optional>

namespace tarnwick::x11 {

// What docks leave of the root window on the present desktop (_NET_WORKAREA), in device pixels.
// Absent without a window manager that tells.
std::optional<QRect> workArea();

// Centre of _NET_ACTIVE_WINDOW in device pixels of the root window. Absent when no window is
// active.
std::optional<QPoint> activeWindowCentre();

}  // namespace tarnwick::x11
