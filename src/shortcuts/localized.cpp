#include "shortcuts/localized.h"

#include <map>

namespace tarnwick::KeyboardShortcuts {

std::string localized(const std::string& key) {
  static const std::map<std::string, std::string> texts = {
      {"space_key", "Space"},
  };
  const auto found = texts.find(key);
  return found != texts.end() ? found->second : key;
}

}  // namespace tarnwick::KeyboardShortcuts
