#include "core/shortcuts/conflicts.h"

#include <algorithm>

#include "core/shortcuts/character.h"
#include "core/shortcuts/localized.h"
#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

bool matches(const std::string& key, KeyModifiers modifiers, const KeyedMenuItem& item) {
  std::string equivalent = item.keyEquivalent;
  KeyModifiers mask = item.modifierMask;
  const std::string lowered = lowerCased(equivalent);
  if (contains(modifiers, KeyModifiers::shift) && lowered != equivalent) {
    equivalent = lowered;
    mask = mask | KeyModifiers::shift;
  }
  return key == equivalent && modifiers == mask;
}

void collect(const std::string& key, KeyModifiers modifiers, const KeyedMenu& menu,
             std::vector<KeyedMenuItem>& found) {
  for (const KeyedMenuItem& item : menu) {
    if (matches(key, modifiers, item)) found.push_back(item);
    collect(key, modifiers, item.submenu, found);
  }
}

std::optional<Conflict> menuConflict(const Shortcut& shortcut, const Checks& checks) {
  for (const auto& item : menuItemsWithMatchingShortcut(shortcut, checks.mainMenu)) {
    if (checks.boundName && item.boundName == checks.boundName) continue;
    return Conflict{CheckStep::menuItems, checks.policy.menuItem,
                    localized("keyboard_shortcut_used_by_menu_item", item.title), ""};
  }
  return std::nullopt;
}

// Two releases do not hand combinations of option alone to sandboxed programs.
std::optional<Conflict> disallowedConflict(const Shortcut& shortcut, const Checks& checks) {
  const auto& system = checks.system;
  const bool affected = system.majorVersion == 15 &&
                        (system.minorVersion == 0 || system.minorVersion == 1) &&
                        system.isSandboxed;
  const auto looked = KeyModifiers::capsLock | KeyModifiers::control | KeyModifiers::option |
                      KeyModifiers::command | KeyModifiers::function;
  if (!affected || (shortcut.modifiers() & looked) != KeyModifiers::option) return std::nullopt;
  const bool allowed = checks.policy.disallowed == ConflictBehavior::allow;
  return Conflict{CheckStep::disallowed,
                  allowed ? ConflictBehavior::allow : ConflictBehavior::block,
                  localized("keyboard_shortcut_disallowed"), ""};
}

std::optional<Conflict> systemConflict(const Shortcut& shortcut, const Checks& checks) {
  if (!isTakenBySystem(shortcut)) return std::nullopt;
  return Conflict{CheckStep::system, checks.policy.systemShortcut,
                  localized("keyboard_shortcut_used_by_system"),
                  localized("keyboard_shortcuts_can_be_changed")};
}

std::optional<Conflict> customConflict(const Shortcut& shortcut, const Checks& checks) {
  const auto result = checks.validate ? checks.validate(shortcut) : ValidationResult::allow();
  if (!result.reason) return std::nullopt;
  return Conflict{CheckStep::custom, ConflictBehavior::block, *result.reason, ""};
}

}  // namespace

std::vector<Shortcut> systemShortcuts() {
  std::vector<Shortcut> shortcuts;
  const auto& services = Module::shared().services;
  if (!services || !services->systemShortcuts) return shortcuts;
  for (const auto& taken : services->systemShortcuts->taken()) {
    shortcuts.emplace_back(taken.carbonKeyCode, taken.carbonModifiers & 0xFFFFFFFF);
  }
  return shortcuts;
}

bool isTakenBySystem(const Shortcut& shortcut) {
  if (shortcut == Shortcut(Key::f12)) return false;
  const auto all = systemShortcuts();
  if (std::find(all.begin(), all.end(), shortcut) != all.end()) return true;
  const auto& services = Module::shared().services;
  return services && services->systemShortcuts &&
         services->systemShortcuts->isTaken({shortcut.carbonKeyCode(), shortcut.carbonModifiers()});
}

std::vector<KeyedMenuItem> menuItemsWithMatchingShortcut(const Shortcut& shortcut,
                                                         const KeyedMenu& menu) {
  std::vector<KeyedMenuItem> found;
  if (menu.empty()) return found;
  if (const auto key = shortcut.nsMenuItemKeyEquivalent()) {
    collect(*key, shortcut.modifiers(), menu, found);
  }
  return found;
}

std::optional<Conflict> findConflict(const Shortcut& shortcut, const Checks& checks,
                                     CheckStep from) {
  using Check = std::optional<Conflict> (*)(const Shortcut&, const Checks&);
  constexpr Check all[] = {menuConflict, disallowedConflict, systemConflict, customConflict};
  for (auto step = static_cast<std::size_t>(from); step < std::size(all); ++step) {
    const auto conflict = all[step](shortcut, checks);
    if (conflict && conflict->behavior != ConflictBehavior::allow) return conflict;
  }
  return std::nullopt;
}

}  // namespace tarnwick::KeyboardShortcuts
