#include "core/panel/panel_section.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

namespace tarnwick {

namespace {

using Entry = PanelSection::Entry;
using BundleIds = std::vector<std::string>;

struct Running {
  std::string name;
  std::optional<ThemeIcon> icon;
};

bool contains(const BundleIds& bundleIds, const std::string& bundleId) {
  return std::find(bundleIds.begin(), bundleIds.end(), bundleId) != bundleIds.end();
}

// Of two running applications with one identifier the later counts.
std::unordered_map<std::string, Running> runningAmong(const BundleIds& hidden,
                                                      Workspace& workspace) {
  std::unordered_map<std::string, Running> running;
  for (const RunningApplication& application : workspace.runningApplications()) {
    const auto& bundleId = application.bundleIdentifier;
    if (!bundleId || !contains(hidden, *bundleId)) continue;
    running[*bundleId] = {application.localizedName.value_or(*bundleId), application.icon};
  }
  return running;
}

}  // namespace

std::vector<PanelSection> buildSections(const Preferences& preferences, Workspace& workspace,
                                        StatusIconCapturer& capturer) {
  const BundleIds hidden = preferences.hiddenBundleIds();
  if (hidden.empty()) return {};
  const auto running = runningAmong(hidden, workspace);
  const bool statusPictures = preferences.panelIconStyle() == PanelIconStyle::statusIcon;

  const auto entryFor = [&](const std::string& bundleId) {
    const auto application = running.find(bundleId);
    const bool isRunning = application != running.end();
    Entry entry{bundleId, isRunning ? application->second.name : bundleId, {}, false, false};
    if (auto picture = statusPictures ? capturer.cachedIcon(bundleId) : std::nullopt) {
      entry.icon = std::move(*picture);
      entry.isStatusIcon = true;
      entry.isMonochrome = capturer.isMonochromeIcon(bundleId);
    } else if (isRunning && application->second.icon) {
      entry.icon = *application->second.icon;
    }
    return entry;
  };

  std::vector<PanelSection> sections;
  std::set<std::string> grouped;
  for (const AppGroup& group : preferences.groups()) {
    PanelSection section{group.name, {}};
    for (const std::string& bundleId : group.bundleIds) {
      if (!contains(hidden, bundleId)) continue;
      grouped.insert(bundleId);
      section.entries.push_back(entryFor(bundleId));
    }
    if (!section.entries.empty()) sections.push_back(std::move(section));
  }
  PanelSection ungrouped;
  for (const std::string& bundleId : hidden) {
    if (!grouped.contains(bundleId)) ungrouped.entries.push_back(entryFor(bundleId));
  }
  if (!ungrouped.entries.empty()) sections.insert(sections.begin(), std::move(ungrouped));
  return sections;
}

}  // namespace tarnwick
