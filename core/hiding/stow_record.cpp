#include "core/hiding/stow_record.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::ptrdiff_t mostOwed = 500;
constexpr int mostItems = 20;  // of one application

StowRecord::Counts countsOf(const std::vector<std::string>& bundleIds) {
  StowRecord::Counts counts;
  for (const std::string& bundleId : bundleIds) ++counts[bundleId];
  return counts;
}

}  // namespace

void StowRecord::add(const Counts& hidden) {
  known_ = present();
  const Counts noted = countsOf(known_);
  for (const auto& [bundleId, items] : hidden) {
    const auto found = noted.find(bundleId);
    const int more = std::clamp(items, 1, mostItems) - (found == noted.end() ? 0 : found->second);
    if (more > 0) known_.insert(known_.end(), static_cast<std::size_t>(more), bundleId);
  }
  // Of applications that never come back the oldest are forgotten.
  const auto isOwed = [&](const std::string& bundleId) { return !hidden.contains(bundleId); };
  auto excess = std::ranges::count_if(known_, isOwed) - mostOwed;
  std::erase_if(known_,
                [&](const std::string& bundleId) { return isOwed(bundleId) && excess-- > 0; });
  preferences_.setStowedBundleIds(known_);
}

void StowRecord::save() {
  known_ = present();
  preferences_.setStowedBundleIds(known_);
}

StowRecord::Counts StowRecord::owed(const std::set<std::string>& hidden) const {
  Counts owed = countsOf(present());
  std::erase_if(owed, [&](const auto& entry) { return hidden.contains(entry.first); });
  return owed;
}

void StowRecord::settle(const std::string& bundleId) {
  known_ = present();
  std::erase(known_, bundleId);
  preferences_.setStowedBundleIds(known_);
}

std::vector<std::string> StowRecord::present() const {
  auto all = preferences_.stowedBundleIds();
  Counts stored = countsOf(all);
  for (const std::string& bundleId : known_) {
    if (--stored[bundleId] < 0) all.push_back(bundleId);
  }
  return all;
}

}  // namespace tarnwick
