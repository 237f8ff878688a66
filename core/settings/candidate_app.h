#pragma once

#include <optional>
#include <string>

#include "core/ports/workspace.h"

namespace tarnwick {

// One row of the settings: an application that has status items now or is hidden.
struct CandidateApp {
  std::string bundleId;           // its identity
  std::string name;               // the bundle identifier when it is not in the bar
  std::optional<ThemeIcon> icon;  // likewise absent then
  bool operator==(const CandidateApp&) const = default;
};

}  // namespace tarnwick
