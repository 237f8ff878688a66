#pragma once

#include <string>

namespace tarnwick::KeyboardShortcuts {

// The module's text for a key, in the user's language where the services know it; an unknown key is
// its own text.
std::string localized(const std::string& key);
// With the argument in its one place.
std::string localized(const std::string& key, const std::string& argument);

}  // namespace tarnwick::KeyboardShortcuts
