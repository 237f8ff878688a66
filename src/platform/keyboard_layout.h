#pragma once

#include <cstdint>
#include <optional>

#include "platform/main_loop.h"

namespace tarnwick {

// What the keys of the present keyboard print, and how fast they repeat.
class KeyboardLayout {
 public:
  virtual ~KeyboardLayout() = default;

  // The character that the key at this position (KeyboardShortcuts::Key) prints without modifiers
  // in the layout in use, or, where that one has no Latin letters, in the last one in use that has
  // them. A dead key prints its accent alone. Absent for keys that print nothing.
  virtual std::optional<char32_t> character(std::uint16_t keyCode) const = 0;

  // From the press of a key to its first repetition, and between repetitions.
  virtual Duration keyRepeatDelay() const = 0;
  virtual Duration keyRepeatInterval() const = 0;
};

}  // namespace tarnwick
