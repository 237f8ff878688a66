#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "common/base/registration.h"
#include "core/ports/main_loop.h"

namespace tarnwick {

// What the keys of the present keyboard print, and how fast they repeat.
class KeyboardLayout {
 public:
  virtual ~KeyboardLayout() = default;

  // The character that the key at this position (KeyboardShortcuts::Key) prints without modifiers
  // in the layout in use, or, where that one has no Latin letters, in the last one in use that has
  // them. A dead key prints its accent alone, which may be a combining character. Absent for keys
  // that print nothing.
  virtual std::optional<char32_t> character(std::uint16_t keyCode) const = 0;

  // What such a key is called, for people and in UTF-8: "Pause", "Volume Up". Absent for places
  // that the keyboard does not have.
  virtual std::optional<std::string> name(std::uint16_t keyCode) const = 0;

  // Called after keys have come to print or to be called something else.
  virtual Registration onChanged(std::function<void()> callback) = 0;

  // From the press of a key to its first repetition, and between repetitions.
  virtual Duration keyRepeatDelay() const = 0;
  virtual Duration keyRepeatInterval() const = 0;
};

}  // namespace tarnwick
