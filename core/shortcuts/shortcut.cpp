#include "core/shortcuts/shortcut.h"

#include <cstdlib>
#include <limits>
#include <nlohmann/json.hpp>

#include "core/shortcuts/character.h"
#include "core/shortcuts/module.h"
#include "core/shortcuts/special_key.h"

namespace tarnwick::KeyboardShortcuts {

using nlohmann::json;

namespace {

constexpr const char* keyCodeMember = "carbonKeyCode";
constexpr const char* modifiersMember = "carbonModifiers";
constexpr const char* replacementCharacter = "\uFFFD";
const std::string dottedCircle = "\u25CC";  // carries an accent that cannot stand alone

// A whole number, however it is written.
std::optional<std::int64_t> integer(const json& record, const char* member) {
  const auto found = record.find(member);
  if (found == record.end() || !found->is_number()) return std::nullopt;
  if (found->is_number_unsigned()) {
    const auto number = found->get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(number);
  }
  if (found->is_number_integer()) return found->get<std::int64_t>();
  const auto number = found->get<double>();
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (!(number >= -limit && number < limit)) return std::nullopt;
  const auto whole = static_cast<std::int64_t>(number);
  if (static_cast<double>(whole) != number) return std::nullopt;
  return whole;
}

// Stored key codes may be any number: those that no key can have print nothing.
bool isKeyCode(std::int64_t number) {
  return number >= 0 && number <= std::numeric_limits<std::uint16_t>::max();
}

// What the layout prints for a key that is not special.
std::optional<char32_t> keyToCharacter(Key key) {
  const auto& services = Module::shared().services;
  if (!services || specialKey(key) || !isKeyCode(key.rawValue)) return std::nullopt;
  return services->layout.character(static_cast<std::uint16_t>(key.rawValue));
}

// The same for people, or what the key is called.
std::string keyToText(Key key) {
  const auto& services = Module::shared().services;
  if (const auto printed = keyToCharacter(key)) {
    const bool combining = *printed >= 0x300 && *printed < 0x370;
    return combining ? dottedCircle + *character(*printed) : capitalised(*printed);
  }
  const auto name = services && isKeyCode(key.rawValue)
                        ? services->layout.name(static_cast<std::uint16_t>(key.rawValue))
                        : std::nullopt;
  return name.value_or(replacementCharacter);
}

}  // namespace

Shortcut::Shortcut(Key key, KeyModifiers modifiers)
    : Shortcut(key.rawValue, KeyboardShortcuts::carbon(modifiers)) {}

Shortcut::Shortcut(std::int64_t carbonKeyCode, std::int64_t carbonModifiers)
    : carbonKeyCode_(carbonKeyCode), carbonModifiers_(normalised(carbonModifiers)) {}

std::optional<Shortcut> Shortcut::of(const InputEvent& event) {
  if (event.type != EventKind::keyDown && event.type != EventKind::keyUp) return std::nullopt;
  return Shortcut(Key(event.keyCode), event.modifierFlags & ~KeyModifiers::function);
}

std::string Shortcut::toJson() const {
  return json{{keyCodeMember, carbonKeyCode_}, {modifiersMember, carbonModifiers_}}.dump();
}

std::optional<Shortcut> Shortcut::fromJson(const std::string& text) {
  const json record = json::parse(text, nullptr, false);
  if (!record.is_object()) return std::nullopt;
  const auto keyCode = integer(record, keyCodeMember);
  const auto modifiers = integer(record, modifiersMember);
  if (!keyCode || !modifiers) return std::nullopt;
  Shortcut shortcut;
  shortcut.carbonKeyCode_ = *keyCode;
  shortcut.carbonModifiers_ = *modifiers;
  return shortcut;
}

std::string Shortcut::presentableDescription() const {
  const std::string symbols = symbolicRepresentation(modifiers());
  if (const auto special = specialKey(key())) {
    return symbols + KeyboardShortcuts::presentableDescription(*special);
  }
  return symbols + keyToText(key());
}

std::optional<std::string> Shortcut::nsMenuItemKeyEquivalent() const {
  if (const auto special = specialKey(key())) return appKitMenuItemKeyEquivalent(*special);
  const auto printed = keyToCharacter(key());
  return printed ? character(*printed) : std::nullopt;
}

bool isSandboxed() {
  static const bool sandboxed = std::getenv("APP_SANDBOX_CONTAINER_ID") != nullptr;
  return sandboxed;
}

}  // namespace tarnwick::KeyboardShortcuts
