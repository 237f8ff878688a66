#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/ports/key_event.h"
#include "core/shortcuts/key.h"
#include "core/shortcuts/modifiers.h"

namespace tarnwick::KeyboardShortcuts {

class Name;

// A key with modifiers, in the form in which it is stored and registered.
class Shortcut {
 public:
  // Keeps the five known modifiers.
  explicit Shortcut(Key key, KeyModifiers modifiers = KeyModifiers::none);
  Shortcut(std::int64_t carbonKeyCode, std::int64_t carbonModifiers);
  // Of a press or release of a key, without the function flag, which F-keys and arrows bear by
  // themselves. Absent for other events.
  static std::optional<Shortcut> of(const InputEvent& event);
  // The stored one of a name; absent when it has none.
  static std::optional<Shortcut> of(const Name& name);

  // As stored: {"carbonKeyCode":40,"carbonModifiers":4352}. What is read is taken as it stands.
  std::string toJson() const;
  static std::optional<Shortcut> fromJson(const std::string& text);

  std::int64_t carbonKeyCode() const { return carbonKeyCode_; }
  std::int64_t carbonModifiers() const { return carbonModifiers_; }
  Key key() const { return Key(carbonKeyCode_); }
  KeyModifiers modifiers() const { return fromCarbon(carbonModifiers_); }

  // For people, in UTF-8: "⌃⌥⇧⌘K", "⌃Pause" for a key that prints nothing but has a name, else
  // with U+FFFD.
  std::string presentableDescription() const;
  std::string description() const { return presentableDescription(); }
  // What a menu item bears as its key, in UTF-8; absent when no menu can show it.
  std::optional<std::string> nsMenuItemKeyEquivalent() const;

  auto operator<=>(const Shortcut&) const = default;

 private:
  Shortcut() = default;

  std::int64_t carbonKeyCode_ = 0;
  std::int64_t carbonModifiers_ = 0;
};

// The process lives in a sandbox, by its environment at the first call.
bool isSandboxed();

}  // namespace tarnwick::KeyboardShortcuts

template <>
struct std::hash<tarnwick::KeyboardShortcuts::Shortcut> {
  std::size_t operator()(const tarnwick::KeyboardShortcuts::Shortcut& shortcut) const noexcept {
    const std::hash<std::int64_t> hashOf;
    return hashOf(shortcut.carbonKeyCode()) * 31 + hashOf(shortcut.carbonModifiers());
  }
};
