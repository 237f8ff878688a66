#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/ports/key_event.h"

namespace tarnwick::x11 {

// Which of the X server's modifier bits mean what on the present keyboard.
struct ModifierMasks {
  std::uint16_t alt = 0;
  std::uint16_t super = 0;
  std::uint16_t numLock = 0;
  std::uint16_t scrollLock = 0;

  // Asks the X server.
  static ModifierMasks present();

  // Every bit that a shortcut may have.
  std::uint16_t ofShortcuts() const;
  // Bits for the modifiers; absent when the keyboard has no key for one of them.
  std::optional<std::uint16_t> bits(KeyModifiers modifiers) const;
  // Modifiers of an event's state, `unnamed` for those that the core has no name for.
  KeyModifiers modifiers(std::uint16_t state) const;
  // The bits beside every combination of lock keys, which may be on at any time.
  std::vector<std::uint16_t> withLocks(std::uint16_t bits) const;

  bool operator==(const ModifierMasks&) const = default;
};

}  // namespace tarnwick::x11
