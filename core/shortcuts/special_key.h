#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/shortcuts/key.h"

namespace tarnwick::KeyboardShortcuts {

// Keys that are shown by a sign of their own, whatever the layout prints.
// clang-format off
enum class SpecialKey : std::uint8_t {
  return_, delete_, deleteForward, end, escape, help, home, space, tab, pageUp, pageDown, upArrow,
  rightArrow, downArrow, leftArrow, f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14,
  f15, f16, f17, f18, f19, f20, keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6,
  keypad7, keypad8, keypad9, keypadClear, keypadDecimal, keypadDivide, keypadEnter, keypadEquals,
  keypadMinus, keypadMultiply, keypadPlus,
};
// clang-format on

// Absent for letters, digits, punctuation, modifiers, volume keys and keys without a name.
std::optional<SpecialKey> specialKey(Key key);

// For people, in UTF-8.
std::string presentableDescription(SpecialKey key);
// The character that a menu item bears for the key, in UTF-8; absent for keys of the keypad.
std::optional<std::string> appKitMenuItemKeyEquivalent(SpecialKey key);

}  // namespace tarnwick::KeyboardShortcuts
