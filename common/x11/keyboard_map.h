#pragma once

#include <vector>

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// The keyboard as the server has it now: read once, in one round trip.
class KeyboardMap {
 public:
  KeyboardMap();

  // Absent when no key makes that symbol.
  std::optional<xcb_keycode_t> keycode(std::uint32_t keysym) const;
  // The modifier bit such a key sets; 0 when none does.
  std::uint16_t modifier(std::uint32_t keysym) const;

 private:
  std::vector<std::uint32_t> keysyms_;  // keysymsPerKeycode_ for each keycode from first_ on
  std::size_t keysymsPerKeycode_ = 0;
  std::size_t first_ = 0;
  std::array<std::vector<xcb_keycode_t>, 8> modifierKeys_;
};

namespace keysym {
inline constexpr std::uint32_t escape = 0xff1b;
inline constexpr std::uint32_t scrollLock = 0xff14;
inline constexpr std::uint32_t numLock = 0xff7f;
inline constexpr std::uint32_t superLeft = 0xffeb;
inline constexpr std::uint32_t superRight = 0xffec;
}  // namespace keysym

}  // namespace tarnwick::bar::x11
