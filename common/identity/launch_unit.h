#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::desktop {

// What the name of a systemd unit tells of the application launched in it: scopes and services
// named "app[-<launcher>]-<id>-<random>.scope", "app[-<launcher>]-<id>[@<random>].service",
// "dbus-<bus>-<id>@<n>.service" and "snap.<snap>.<app>-<uuid>.scope".
struct LaunchUnit {
  enum class Kind { other, application, flatpak, snap };

  Kind kind = Kind::other;
  // Desktop-file ids, the likeliest first; of a snap "<snap>_<app>". Several, because not every
  // launcher escapes the dashes of an id.
  std::vector<std::string> ids;
};

LaunchUnit parseLaunchUnit(std::string_view unit);

}  // namespace tarnwick::desktop
