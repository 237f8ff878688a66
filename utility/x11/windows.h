#pragma once

#include <QPoint>
#include <QRect>
#include <memory>
#include <optional>

namespace tarnwick::x11 {

// A connection to the X server that $DISPLAY names; empty when it cannot be reached. To be held
// until another one is made: some servers start anew when their last client leaves.
std::shared_ptr<void> connectToServer();

// What docks leave of the root window on the present desktop (_NET_WORKAREA), in device pixels.
// Absent without a window manager that tells.
std::optional<QRect> workArea();

// Centre of _NET_ACTIVE_WINDOW in device pixels of the root window. Absent when no window is
// active.
std::optional<QPoint> activeWindowCentre();

}  // namespace tarnwick::x11
