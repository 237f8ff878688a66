#include "shortcuts/localized.h"

#include <map>

namespace tarnwick::KeyboardShortcuts {

std::string localized(const std::string& key) {
  static const std::map<std::string, std::string> texts = {
      {"force_use_shortcut", "Use Anyway"},
      {"keyboard_shortcut_disallowed",
       "Option may only be used in a shortcut together with Control or Command."},
      {"keyboard_shortcut_used_by_menu_item",
       "This shortcut cannot be used because it belongs to the menu item “%@”."},
      {"keyboard_shortcut_used_by_system", "This shortcut is already used by the system."},
      {"keyboard_shortcuts_can_be_changed",
       "The system’s shortcuts can be changed in the keyboard settings."},
      {"ok", "OK"},
      {"press_shortcut", "Press Shortcut"},
      {"record_shortcut", "Record Shortcut"},
      {"space_key", "Space"},
  };
  const auto found = texts.find(key);
  return found != texts.end() ? found->second : key;
}

std::string localized(const std::string& key, const std::string& argument) {
  std::string text = localized(key);
  const std::string place = "%@";
  const auto found = text.find(place);
  return found != std::string::npos ? text.replace(found, place.size(), argument) : text;
}

}  // namespace tarnwick::KeyboardShortcuts
