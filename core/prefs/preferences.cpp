#include "core/prefs/preferences.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tarnwick {

namespace {

constexpr const char* hiddenBundleIdsKey = "hiddenBundleIds";
constexpr const char* stowedBundleIdsKey = "stowedBundleIds";
constexpr const char* appGroupsKey = "appGroups";
constexpr const char* panelColumnsKey = "panelColumns";
constexpr const char* panelIconStyleKey = "panelIconStyle";
constexpr const char* handleIconStyleKey = "handleIconStyle";

template <class T>
std::optional<T> read(const DefaultsStore& defaults, const char* key) {
  auto value = defaults.value(key);
  if (!value || !std::holds_alternative<T>(*value)) return std::nullopt;
  return std::get<T>(std::move(*value));
}

std::vector<std::string> readStrings(const DefaultsStore& defaults, const char* key) {
  return read<std::vector<std::string>>(defaults, key).value_or(std::vector<std::string>{});
}

// The first style is the default.
template <class Style, std::size_t N>
Style readStyle(const DefaultsStore& defaults, const char* key,
                const StyleInfo<Style> (&styles)[N]) {
  const auto stored = read<std::string>(defaults, key);
  for (const auto& info : styles) {
    if (stored == info.rawValue) return info.style;
  }
  return styles[0].style;
}

template <class Style, std::size_t N>
void writeStyle(DefaultsStore& defaults, const char* key, const StyleInfo<Style> (&styles)[N],
                Style style) {
  for (const auto& info : styles) {
    if (info.style == style) defaults.set(key, std::string(info.rawValue));
  }
}

// The Unicode space separators (class Zs) and the horizontal tab, in UTF-8. Line breaks are none.
constexpr std::string_view blanks[] = {
    "\t",     " ",      "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u202f", "\u205f", "\u3000",
};

std::string trimmed(std::string_view text) {
  for (bool found = true; found;) {
    found = false;
    for (const auto blank : blanks) {
      if (text.starts_with(blank)) {
        text.remove_prefix(blank.size());
        found = true;
      }
      if (text.ends_with(blank)) {
        text.remove_suffix(blank.size());
        found = true;
      }
    }
  }
  return std::string(text);
}

}  // namespace

std::vector<std::string> Preferences::hiddenBundleIds() const {
  return readStrings(*defaults_, hiddenBundleIdsKey);
}

bool Preferences::setHiddenBundleIds(std::vector<std::string> bundleIds) const {
  return defaults_->set(hiddenBundleIdsKey, std::move(bundleIds));
}

std::vector<std::string> Preferences::stowedBundleIds() const {
  return readStrings(*defaults_, stowedBundleIdsKey);
}

bool Preferences::setStowedBundleIds(std::vector<std::string> bundleIds) const {
  return defaults_->set(stowedBundleIdsKey, std::move(bundleIds));
}

int Preferences::panelColumns() const {
  const std::int64_t stored = read<std::int64_t>(*defaults_, panelColumnsKey).value_or(0);
  if (stored == 0) return defaultColumns;
  return static_cast<int>(std::clamp<std::int64_t>(stored, minimumColumns, maximumColumns));
}

void Preferences::setPanelColumns(int columns) const {
  defaults_->set(panelColumnsKey,
                 std::int64_t{std::clamp(columns, minimumColumns, maximumColumns)});
}

PanelIconStyle Preferences::panelIconStyle() const {
  return readStyle(*defaults_, panelIconStyleKey, panelIconStyles);
}

void Preferences::setPanelIconStyle(PanelIconStyle style) const {
  writeStyle(*defaults_, panelIconStyleKey, panelIconStyles, style);
}

HandleIconStyle Preferences::handleIconStyle() const {
  return readStyle(*defaults_, handleIconStyleKey, handleIconStyles);
}

void Preferences::setHandleIconStyle(HandleIconStyle style) const {
  writeStyle(*defaults_, handleIconStyleKey, handleIconStyles, style);
}

std::vector<AppGroup> Preferences::groups() const {
  const auto data = read<DefaultsData>(*defaults_, appGroupsKey);
  if (!data) return {};
  return decodeGroups(data->bytes).value_or(std::vector<AppGroup>{});
}

bool Preferences::setGroups(const std::vector<AppGroup>& groups) const {
  auto json = encodeGroups(groups);
  if (!json) return defaults_->remove(appGroupsKey);
  return defaults_->set(appGroupsKey, DefaultsData{std::move(*json)});
}

std::optional<std::string> Preferences::groupName(const std::string& bundleId) const {
  for (const AppGroup& group : groups()) {
    if (std::find(group.bundleIds.begin(), group.bundleIds.end(), bundleId) !=
        group.bundleIds.end()) {
      return group.name;
    }
  }
  return std::nullopt;
}

bool Preferences::assign(const std::string& bundleId, const std::string& toGroup) const {
  auto all = groups();
  for (AppGroup& group : all) std::erase(group.bundleIds, bundleId);
  const std::string name = trimmed(toGroup);
  if (!name.empty()) {
    auto group = std::find_if(all.begin(), all.end(),
                              [&](const AppGroup& other) { return other.name == name; });
    if (group == all.end()) group = all.insert(all.end(), AppGroup{name, {}});
    group->bundleIds.push_back(bundleId);
  }
  std::erase_if(all, [](const AppGroup& group) { return group.bundleIds.empty(); });
  return setGroups(all);
}

}  // namespace tarnwick
