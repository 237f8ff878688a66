// The part of SettingsView that is about the list of applications.
#include <algorithm>
#include <tuple>
#include <utility>

#include "core/settings/hiding_choice.h"
#include "core/settings/settings_view.h"

namespace tarnwick {

void SettingsView::rescan() {
  hasPermission_ = desktop_.accessibility.isProcessTrusted();
  listCandidates();
  groupNames_.clear();
  storedGroupNames_.clear();
  readStore();
  changed_.notify();
}

void SettingsView::listCandidates() {
  std::map<std::string, CandidateApp> found;
  for (const MenuBarItemInfo& item : scanner_.scan()) {
    found[item.bundleId] = {item.bundleId, item.appName, item.icon};
  }
  for (const std::string& bundleId : preferences_.hiddenBundleIds()) {
    found.try_emplace(bundleId, CandidateApp{bundleId, bundleId, std::nullopt});
  }
  candidates_.clear();
  for (auto& [bundleId, candidate] : found) candidates_.push_back(std::move(candidate));
  std::stable_sort(candidates_.begin(), candidates_.end(),
                   [&](const CandidateApp& first, const CandidateApp& second) {
                     return desktop_.collation.compareIgnoringCase(first.name, second.name) < 0;
                   });
}

// A form that shows the same already is left alone, and with it what is being typed.
void SettingsView::followStore() {
  const auto shown = [this] {
    return std::tuple(hidden_, groupNames_, panelColumns_, iconStyle_, handleStyle_,
                      candidates_.size());
  };
  const auto before = shown();
  readStore();
  const bool listed = std::ranges::all_of(hidden_, [this](const std::string& bundleId) {
    return std::ranges::count(candidates_, bundleId, &CandidateApp::bundleId) > 0;
  });
  if (!listed) listCandidates();
  if (shown() != before) changed_.notify();
}

// The text of a group field gives way only to a name that somebody else has stored.
void SettingsView::readStore() {
  const auto stored = preferences_.hiddenBundleIds();
  hidden_ = {stored.begin(), stored.end()};
  panelColumns_ = preferences_.panelColumns();
  iconStyle_ = preferences_.panelIconStyle();
  handleStyle_ = preferences_.handleIconStyle();
  const auto before = std::exchange(storedGroupNames_, storedGroupNames());
  for (const auto& [bundleId, name] : storedGroupNames_) {
    const auto known = before.find(bundleId);
    const bool same = known == before.end() ? name.empty() : name == known->second;
    if (same) {
      groupNames_.try_emplace(bundleId, name);
    } else {
      groupNames_[bundleId] = name;
    }
  }
}

// Of every hidden application, by the first group that holds it; empty for those in no group.
std::map<std::string, std::string> SettingsView::storedGroupNames() const {
  std::map<std::string, std::string> grouped;
  for (const AppGroup& group : preferences_.groups()) {
    for (const std::string& bundleId : group.bundleIds) grouped.try_emplace(bundleId, group.name);
  }
  std::map<std::string, std::string> names;
  for (const std::string& bundleId : preferences_.hiddenBundleIds()) {
    names[bundleId] = grouped[bundleId];
  }
  return names;
}

Binding<bool> SettingsView::binding(const std::string& bundleId) {
  return {[weak = weak_from_this(), bundleId] {
            const auto self = weak.lock();
            return self && self->hidden_.contains(bundleId);
          },
          [weak = weak_from_this(), bundleId](bool hidden) {
            if (const auto self = weak.lock()) self->setHidden(bundleId, hidden);
          }};
}

// The text of the group field stays: it is back when the application is hidden again, until the
// next rescan.
void SettingsView::setHidden(const std::string& bundleId, bool hidden) {
  chooseHidden(preferences_, *controller_, bundleId, hidden);
  readStore();
  changed_.notify();
}

Binding<std::string> SettingsView::groupBinding(const std::string& bundleId) {
  return {[weak = weak_from_this(), bundleId]() -> std::string {
            const auto self = weak.lock();
            if (!self) return {};
            const auto name = self->groupNames_.find(bundleId);
            return name == self->groupNames_.end() ? std::string() : name->second;
          },
          [weak = weak_from_this(), bundleId](const std::string& name) {
            if (const auto self = weak.lock()) self->setGroupName(bundleId, name);
          }};
}

void SettingsView::setGroupName(const std::string& bundleId, const std::string& name) {
  const bool written = preferences_.assign(bundleId, name);
  const std::string stored = preferences_.groupName(bundleId).value_or("");
  storedGroupNames_[bundleId] = stored;
  groupNames_[bundleId] = written ? name : stored;
  controller_->refreshPanel();
  changed_.notify();
}

}  // namespace tarnwick
