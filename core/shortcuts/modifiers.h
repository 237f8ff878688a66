#pragma once

#include <cstdint>
#include <string>

#include "core/ports/key_event.h"

namespace tarnwick::KeyboardShortcuts {

// Modifier bits as hot keys are registered and stored with.
namespace carbonModifier {
inline constexpr std::int64_t command = 0x100;
inline constexpr std::int64_t shift = 0x200;
inline constexpr std::int64_t option = 0x800;
inline constexpr std::int64_t control = 0x1000;
inline constexpr std::int64_t function = 0x20000;
}  // namespace carbonModifier

// Between the two encodings; only control, option, shift, command and function come through.
std::int64_t carbon(KeyModifiers flags);
KeyModifiers fromCarbon(std::int64_t bits);
std::int64_t normalised(std::int64_t carbonBits);

// "⌃⌥⇧⌘" and the globe for function, in this order, those that are present.
std::string symbolicRepresentation(KeyModifiers flags);

}  // namespace tarnwick::KeyboardShortcuts
