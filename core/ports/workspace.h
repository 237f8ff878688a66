#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/base/registration.h"

namespace tarnwick {

// An icon by reference: a name in the icon theme, or an absolute path of an image file.
struct ThemeIcon {
  std::string name;
  std::vector<std::string> otherNames = {};  // tried in this order where there is no such picture
  bool operator==(const ThemeIcon&) const = default;
};

struct RunningApplication {
  std::optional<std::string> bundleIdentifier;  // absent when the process has no identity
  std::optional<std::string> localizedName;
  std::int32_t processIdentifier = 0;
  std::optional<ThemeIcon> icon;
};

// The applications running in this desktop session, with status items or without. Telling them
// needs no permission.
class Workspace {
 public:
  virtual ~Workspace() = default;

  // Each application once, in the desktop's own order. While an Accessibility::Snapshot lives:
  // those that own its status items, each of their processes, in the order of their first items.
  virtual std::vector<RunningApplication> runningApplications() = 0;

  // Called each time any application has finished launching.
  virtual Registration onApplicationLaunched(std::function<void()> callback) = 0;
};

}  // namespace tarnwick
