#include "core/shortcuts/modifiers.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

struct Modifier {
  KeyModifiers flag;
  std::int64_t carbon;
  const char* symbol;
};

constexpr Modifier modifiers[] = {
    {KeyModifiers::control, carbonModifier::control, "\u2303"},
    {KeyModifiers::option, carbonModifier::option, "\u2325"},
    {KeyModifiers::shift, carbonModifier::shift, "\u21E7"},
    {KeyModifiers::command, carbonModifier::command, "\u2318"},
    {KeyModifiers::function, carbonModifier::function, "\U0001F310\uFE0E"},
};

}  // namespace

std::int64_t carbon(KeyModifiers flags) {
  std::int64_t bits = 0;
  for (const Modifier& modifier : modifiers) {
    if (contains(flags, modifier.flag)) bits |= modifier.carbon;
  }
  return bits;
}

KeyModifiers fromCarbon(std::int64_t bits) {
  auto flags = KeyModifiers::none;
  for (const Modifier& modifier : modifiers) {
    if ((bits & modifier.carbon) != 0) flags = flags | modifier.flag;
  }
  return flags;
}

std::int64_t normalised(std::int64_t carbonBits) {
  return carbon(fromCarbon(carbonBits));
}

std::string symbolicRepresentation(KeyModifiers flags) {
  std::string symbols;
  for (const Modifier& modifier : modifiers) {
    if (contains(flags, modifier.flag)) symbols += modifier.symbol;
  }
  return symbols;
}

}  // namespace tarnwick::KeyboardShortcuts
