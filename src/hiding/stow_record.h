#pragma once

#include <set>
#include <string>
#include <vector>

#include "prefs/preferences.h"

namespace tarnwick {

// Which applications' items may stand left of the boundary because of us: every one that is hidden,
// and those no longer hidden whose items have not been seen on its right since. The latter are owed
// a release. Kept in the store, so that neither the end of this process nor that of an application
// makes it forget one.
class StowRecord {
 public:
  explicit StowRecord(Preferences preferences) : preferences_(preferences) {}

  // To be called before items of these are moved to the left.
  void add(const std::set<std::string>& hidden);
  // What stands in the record and is not hidden.
  std::set<std::string> owed(const std::set<std::string>& hidden) const;
  // Its items have been seen on the right of the boundary.
  void settle(const std::string& bundleId);

 private:
  std::vector<std::string> present() const;

  const Preferences preferences_;
  // In order of joining. What this run knows holds also when somebody else writes the store.
  std::vector<std::string> known_;
};

}  // namespace tarnwick
