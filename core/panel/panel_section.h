#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "common/base/bitmap.h"
#include "core/capture/status_icon_capturer.h"
#include "core/ports/workspace.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

// A titled block of the panel: the hidden applications of one group, or those in no group.
struct PanelSection {
  struct Entry {
    std::string bundleId;
    std::string name;  // the application's, else its bundle identifier
    std::variant<std::monostate, ThemeIcon, Picture> icon;  // nothing when nothing is known
    bool isStatusIcon = false;  // the icon is a captured picture of the status item
    bool isMonochrome = false;  // that picture has one colour and is to be tinted
  };

  std::optional<std::string> title;  // absent for the applications in no group
  std::vector<Entry> entries;        // in display order, never empty

  std::string id() const { return title.value_or("\u2022ungrouped"); }
};

// What the panel shows now: the applications in no group first, then the groups in stored order.
std::vector<PanelSection> buildSections(const Preferences& preferences, Workspace& workspace,
                                        StatusIconCapturer& capturer);

}  // namespace tarnwick
