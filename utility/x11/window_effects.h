#pragma once

#include <QRect>
#include <cstdint>
#include <optional>

namespace tarnwick::x11 {

// Whether a compositing manager runs now (the selection _NET_WM_CM_Sn has an owner).
bool isComposited();

// Cuts a window to a rounded rectangle, in the window's own device pixels; nothing gives it its
// whole rectangle again. Presses outside fall through.
void cutWindow(std::uint32_t window, const std::optional<QRect>& outline, int cornerRadius);

// Whether the window manager has minimised a window (_NET_WM_STATE_HIDDEN), as opposed to one that
// is merely on another desktop.
bool isMinimized(std::uint32_t window);

// Asks the window manager to take back that it has maximised a window, be it in one direction only
// (_NET_WM_STATE_MAXIMIZED_VERT or _HORZ). False when it has not.
bool unmaximize(std::uint32_t window);

// Asks the window manager to move a window to the present desktop, to put it in front and to
// activate it, as a pager would (_NET_WM_DESKTOP, _NET_ACTIVE_WINDOW): it does so whatever the user
// works in.
void bringToUser(std::uint32_t window);

}  // namespace tarnwick::x11
