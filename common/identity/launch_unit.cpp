#include "common/identity/launch_unit.h"

#include <charconv>

namespace tarnwick::desktop {

namespace {

constexpr std::size_t kMaxParts = 12;

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

bool takeSuffix(std::string_view& text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

// Resolves systemd's "\x2d".
std::string unescape(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    int code = 0;
    if (text.size() >= 4 && text.starts_with("\\x") &&
        std::from_chars(text.data() + 2, text.data() + 4, code, 16).ptr == text.data() + 4) {
      plain += static_cast<char>(code);
      text.remove_prefix(4);
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
  return plain;
}

LaunchUnit parseSnap(std::string_view name) {
  constexpr std::size_t kUuid = 36;
  if (name.size() > kUuid + 1 && name[name.size() - 13] == '-' && name[name.size() - 28] == '-') {
    const char separator = name[name.size() - kUuid - 1];
    if (separator == '-' || separator == '.') name.remove_suffix(kUuid + 1);
  }
  const std::size_t dot = name.find('.');
  if (dot == name.npos) return {};
  return {LaunchUnit::Kind::snap,
          {std::string(name.substr(0, dot)) + "_" + std::string(name.substr(dot + 1))}};
}

LaunchUnit parseApplication(std::string_view name, bool scope) {
  if (const std::size_t random = name.rfind('-'); scope && random != name.npos) {
    name = name.substr(0, random);
  } else if (!scope) {
    name = name.substr(0, name.find('@'));
  }
  if (takePrefix(name, "flatpak-")) return {LaunchUnit::Kind::flatpak, {unescape(name)}};
  LaunchUnit unit{LaunchUnit::Kind::application, {unescape(name)}};
  for (std::size_t dash = name.find('-'); dash != name.npos && unit.ids.size() < kMaxParts;
       dash = name.find('-')) {
    name.remove_prefix(dash + 1);
    unit.ids.push_back(unescape(name));
  }
  // With a launcher in front, what follows it is the id.
  if (unit.ids.size() > 1) std::swap(unit.ids[0], unit.ids[1]);
  return unit;
}

}  // namespace

LaunchUnit parseLaunchUnit(std::string_view unit) {
  const bool scope = takeSuffix(unit, ".scope");
  if (!scope && !takeSuffix(unit, ".service")) return {};
  if (takePrefix(unit, "snap.")) return parseSnap(unit);
  if (takePrefix(unit, "app-")) return parseApplication(unit, scope);
  if (takePrefix(unit, "dbus-")) {
    const std::size_t dash = unit.find('-');
    if (dash == unit.npos) return {};
    unit.remove_prefix(dash + 1);
    return {LaunchUnit::Kind::application, {unescape(unit.substr(0, unit.find('@')))}};
  }
  return {};
}

}  // namespace tarnwick::desktop
