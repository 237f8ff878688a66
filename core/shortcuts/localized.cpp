#include "core/shortcuts/localized.h"

#include <map>

#include "core/ports/translatable.h"
#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

std::string localized(const std::string& key) {
  static const std::map<std::string, const char*> texts = {
      {"force_use_shortcut", translatable("KeyboardShortcuts", "Use Anyway")},
      {"keyboard_shortcut_disallowed",
       translatable("KeyboardShortcuts",
                    "Option may only be used in a shortcut together with Control or Command.")},
      {"keyboard_shortcut_used_by_menu_item",
       translatable("KeyboardShortcuts",
                    "This shortcut cannot be used because it belongs to the menu item “%@”.")},
      {"keyboard_shortcut_used_by_system",
       translatable("KeyboardShortcuts", "This shortcut is already used by the system.")},
      {"keyboard_shortcuts_can_be_changed",
       translatable("KeyboardShortcuts",
                    "The system’s shortcuts can be changed in the keyboard settings.")},
      {"ok", translatable("KeyboardShortcuts", "OK")},
      {"press_shortcut", translatable("KeyboardShortcuts", "Press Shortcut")},
      {"record_shortcut", translatable("KeyboardShortcuts", "Record Shortcut")},
      {"space_key", translatable("KeyboardShortcuts", "Space")},
  };
  const auto found = texts.find(key);
  if (found == texts.end()) return key;
  const auto& services = Module::shared().services;
  return services && services->translated ? services->translated(found->second) : found->second;
}

std::string localized(const std::string& key, const std::string& argument) {
  std::string text = localized(key);
  const std::string place = "%@";
  const auto found = text.find(place);
  return found != std::string::npos ? text.replace(found, place.size(), argument) : text;
}

}  // namespace tarnwick::KeyboardShortcuts
