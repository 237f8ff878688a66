// The part of SettingsView that is about the list of applications.
#include <algorithm>
#include <utility>

#include "settings/hiding_choice.h"
#include "settings/settings_view.h"

namespace tarnwick {

void SettingsView::rescan() {
  hasPermission_ = desktop_.accessibility.isProcessTrusted();

  std::map<std::string, CandidateApp> found;
  for (const MenuBarItemInfo& item : scanner_.scan()) {
    found[item.bundleId] = {item.bundleId, item.appName, item.icon};
  }
  const auto stored = preferences_.hiddenBundleIds();
  for (const std::string& bundleId : stored) {
    found.try_emplace(bundleId, CandidateApp{bundleId, bundleId, std::nullopt});
  }
  candidates_.clear();
  for (auto& [bundleId, candidate] : found) candidates_.push_back(std::move(candidate));
  std::stable_sort(candidates_.begin(), candidates_.end(),
                   [&](const CandidateApp& first, const CandidateApp& second) {
                     return desktop_.collation.compareIgnoringCase(first.name, second.name) < 0;
                   });

  hidden_ = {stored.begin(), stored.end()};
  groupNames_.clear();
  for (const AppGroup& group : preferences_.groups()) {
    for (const std::string& bundleId : group.bundleIds) {
      if (hidden_.contains(bundleId)) groupNames_.try_emplace(bundleId, group.name);
    }
  }
  for (const std::string& bundleId : hidden_) groupNames_.try_emplace(bundleId);
  changed_.notify();
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
  const auto stored = preferences_.hiddenBundleIds();
  hidden_ = {stored.begin(), stored.end()};
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
  groupNames_[bundleId] = name;
  preferences_.assign(bundleId, name);
  controller_->refreshPanel();
  changed_.notify();
}

}  // namespace tarnwick
