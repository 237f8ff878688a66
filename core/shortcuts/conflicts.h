#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/ports/main_menu.h"
#include "core/shortcuts/shortcut.h"

// What else answers to a shortcut that is about to be stored.
namespace tarnwick::KeyboardShortcuts {

enum class ConflictBehavior : std::uint8_t { block, warn, allow };

struct ConflictPolicy {
  ConflictBehavior menuItem = ConflictBehavior::block;
  ConflictBehavior systemShortcut = ConflictBehavior::warn;
  ConflictBehavior disallowed = ConflictBehavior::block;  // warn is as block

  static constexpr ConflictPolicy allowAll() {
    return {ConflictBehavior::allow, ConflictBehavior::allow, ConflictBehavior::allow};
  }
  bool operator==(const ConflictPolicy&) const = default;
};

// Allowed, or why not.
struct ValidationResult {
  std::optional<std::string> reason;

  static ValidationResult allow() { return {}; }
  static ValidationResult disallow(std::string why) { return {std::move(why)}; }
  bool operator==(const ValidationResult&) const = default;
};
using ValidateShortcut = std::function<ValidationResult(const Shortcut&)>;

// The desktop's own shortcuts that are switched on, asked for anew each time.
std::vector<Shortcut> systemShortcuts();
// F12 alone never is.
bool isTakenBySystem(const Shortcut& shortcut);
// In the order of the menu, each before those of its submenu.
std::vector<KeyedMenuItem> menuItemsWithMatchingShortcut(const Shortcut& shortcut,
                                                         const KeyedMenu& menu);

struct OperatingSystem {
  int majorVersion = 0;
  int minorVersion = 0;
  bool isSandboxed = false;
};

// What a candidate is checked against.
struct Checks {
  ConflictPolicy policy;
  KeyedMenu mainMenu;
  OperatingSystem system;
  ValidateShortcut validate;             // may be empty
  std::optional<std::string> boundName;  // menu items with it merely show the candidate
};

enum class CheckStep : std::uint8_t { menuItems, disallowed, system, custom, done };

struct Conflict {
  CheckStep step;
  ConflictBehavior behavior;  // block or warn
  std::string title;
  std::string message;
};

// The first conflict from a step on; absent when there is none that matters.
std::optional<Conflict> findConflict(const Shortcut& shortcut, const Checks& checks,
                                     CheckStep from = CheckStep::menuItems);

}  // namespace tarnwick::KeyboardShortcuts
