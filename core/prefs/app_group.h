#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Hidden applications that the panel shows together. Its name is its identity.
struct AppGroup {
  std::string name;                    // trimmed
  std::vector<std::string> bundleIds;  // in the order in which they joined
  bool operator==(const AppGroup&) const = default;
};

// JSON: an array of objects with exactly "name" (string) and "bundleIds" (array of strings).
// Absent when the bytes are anything else.
std::optional<std::vector<AppGroup>> decodeGroups(std::string_view json);
// Absent when a string is not valid UTF-8.
std::optional<std::string> encodeGroups(const std::vector<AppGroup>& groups);

}  // namespace tarnwick
