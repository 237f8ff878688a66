#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace tarnwick::x11 {

// Between a key's place as the core counts them (KeyboardShortcuts::Key) and the X server's key
// code for it, which is the kernel's plus 8. Keys beyond the ANSI layout, Print or Play, have the
// numbers from 256 on. Absent for modifier keys and for numbers that no key has.
std::optional<xcb_keycode_t> xKeyCode(std::uint32_t virtualKey);
std::optional<std::uint16_t> virtualKey(xcb_keycode_t keyCode);

}  // namespace tarnwick::x11
