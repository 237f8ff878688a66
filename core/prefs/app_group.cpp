#include "core/prefs/app_group.h"

#include <nlohmann/json.hpp>

namespace tarnwick {

using nlohmann::json;

std::optional<std::vector<AppGroup>> decodeGroups(std::string_view text) {
  const json document = json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!document.is_array()) return std::nullopt;
  std::vector<AppGroup> groups;
  for (const json& object : document) {
    if (!object.is_object()) return std::nullopt;
    const auto name = object.find("name");
    const auto members = object.find("bundleIds");
    if (name == object.end() || !name->is_string()) return std::nullopt;
    if (members == object.end() || !members->is_array()) return std::nullopt;
    AppGroup group{name->get<std::string>(), {}};
    for (const json& member : *members) {
      if (!member.is_string()) return std::nullopt;
      group.bundleIds.push_back(member.get<std::string>());
    }
    groups.push_back(std::move(group));
  }
  return groups;
}

std::optional<std::string> encodeGroups(const std::vector<AppGroup>& groups) {
  json document = json::array();
  for (const AppGroup& group : groups) {
    document.push_back({{"name", group.name}, {"bundleIds", group.bundleIds}});
  }
  try {
    return document.dump();
  } catch (const json::exception&) {
    return std::nullopt;
  }
}

}  // namespace tarnwick
