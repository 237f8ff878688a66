#include "hiding/stow_record.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::ptrdiff_t mostOwed = 500;

}  // namespace

void StowRecord::add(const std::set<std::string>& hidden) {
  known_ = present();
  for (const std::string& bundleId : hidden) {
    if (std::ranges::find(known_, bundleId) == known_.end()) known_.push_back(bundleId);
  }
  // Of applications that never come back the oldest are forgotten.
  const auto isOwed = [&](const std::string& bundleId) { return !hidden.contains(bundleId); };
  auto excess = std::ranges::count_if(known_, isOwed) - mostOwed;
  std::erase_if(known_,
                [&](const std::string& bundleId) { return isOwed(bundleId) && excess-- > 0; });
  preferences_.setStowedBundleIds(known_);
}

std::set<std::string> StowRecord::owed(const std::set<std::string>& hidden) const {
  const auto all = present();
  std::set<std::string> owed(all.begin(), all.end());
  std::erase_if(owed, [&](const std::string& bundleId) { return hidden.contains(bundleId); });
  return owed;
}

void StowRecord::settle(const std::string& bundleId) {
  known_ = present();
  std::erase(known_, bundleId);
  preferences_.setStowedBundleIds(known_);
}

std::vector<std::string> StowRecord::present() const {
  auto all = preferences_.stowedBundleIds();
  for (const std::string& bundleId : known_) {
    if (std::ranges::find(all, bundleId) == all.end()) all.push_back(bundleId);
  }
  return all;
}

}  // namespace tarnwick
