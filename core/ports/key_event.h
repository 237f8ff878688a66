#pragma once

#include <cstdint>

namespace tarnwick {

// Modifier keys held with an event. Super is command, Alt is option.
enum class KeyModifiers : std::uint64_t {
  none = 0,
  unnamed = 0x1,  // AltGr or others of this keyboard that no shortcut can have
  capsLock = 0x10000,
  shift = 0x20000,
  control = 0x40000,
  option = 0x80000,
  command = 0x100000,
  numericPad = 0x200000,
  help = 0x400000,
  function = 0x800000,
  deviceIndependent = 0xffff0000,  // all that are no matter of one keyboard
};

constexpr KeyModifiers operator|(KeyModifiers a, KeyModifiers b) {
  return static_cast<KeyModifiers>(static_cast<std::uint64_t>(a) | static_cast<std::uint64_t>(b));
}
constexpr KeyModifiers operator&(KeyModifiers a, KeyModifiers b) {
  return static_cast<KeyModifiers>(static_cast<std::uint64_t>(a) & static_cast<std::uint64_t>(b));
}
constexpr KeyModifiers operator~(KeyModifiers a) {
  return static_cast<KeyModifiers>(~static_cast<std::uint64_t>(a));
}
constexpr bool contains(KeyModifiers all, KeyModifiers part) {
  return (all & part) == part;
}

enum class EventKind : std::uint8_t { leftMouseDown = 1, keyDown = 10, keyUp = 11 };

// One thing the user did, as a window of ours is told.
struct InputEvent {
  EventKind type = EventKind::keyDown;
  // Position of the key, whatever it prints: the number that the same place has on a keyboard with
  // ANSI layout (KeyboardShortcuts::Key), or above 127 one of the platform's own.
  std::uint16_t keyCode = 0;
  KeyModifiers modifierFlags = KeyModifiers::none;
  bool isRepeat = false;
};

}  // namespace tarnwick
