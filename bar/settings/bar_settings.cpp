#include "bar/settings/bar_settings.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace tarnwick::bar {

namespace {

constexpr const char* clockKey = "clock";
constexpr const char* dateKey = "date";
constexpr const char* applicationNameKey = "application-name";
constexpr const char* iconSizeKey = "icon-size";

constexpr std::pair<ClockHours, const char*> clockNames[] = {
    {ClockHours::locale, "locale"}, {ClockHours::twelve, "12"}, {ClockHours::twentyFour, "24"}};

BarOptions optionsOf(const nlohmann::json& document) {
  BarOptions options;
  if (!document.is_object()) return options;
  const auto flag = [&](const char* key, bool& value) {
    const auto found = document.find(key);
    if (found != document.end() && found->is_boolean()) value = found->get<bool>();
  };
  flag(dateKey, options.showDate);
  flag(applicationNameKey, options.showApplicationName);
  if (const auto clock = document.find(clockKey); clock != document.end() && clock->is_string()) {
    for (const auto& [hours, name] : clockNames) {
      if (*clock == name) options.clockHours = hours;
    }
  }
  if (const auto size = document.find(iconSizeKey); size != document.end()) {
    for (const int side : iconSides) {
      if (size->is_number_integer() && *size == side) options.iconSide = side;
    }
  }
  return options;
}

}  // namespace

BarSettings::BarSettings(desktop::JsonFile file, QObject* parent)
    : QObject(parent), file_(std::move(file)), options_(optionsOf(file_.read())) {}

void BarSettings::set(const BarOptions& options) {
  if (options == options_) return;
  file_.update([&](nlohmann::json& document) {
    if (!document.is_object()) document = nlohmann::json::object();
    for (const auto& [hours, name] : clockNames) {
      if (hours == options.clockHours) document[clockKey] = name;
    }
    document[dateKey] = options.showDate;
    document[applicationNameKey] = options.showApplicationName;
    document[iconSizeKey] = options.iconSide;
    return true;
  });
  take(options);
}

void BarSettings::refresh() {
  take(optionsOf(file_.read()));
}

void BarSettings::take(const BarOptions& options) {
  if (options == options_) return;
  options_ = options;
  emit changed();
}

}  // namespace tarnwick::bar
