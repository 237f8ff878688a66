#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/prefs/preferences.h"

namespace tarnwick {

// Which applications' items may stand left of the boundary because of us: every one that is hidden,
// and those no longer hidden of whose items not all have been seen on its right since. The latter
// are owed a release. Kept in the store, so that neither the end of this process nor that of an
// application makes it forget one.
class StowRecord {
 public:
  // Numbers of items by bundle identifier.
  using Counts = std::map<std::string, int>;

  explicit StowRecord(Preferences preferences) : preferences_(preferences) {}

  // All hidden applications with the items that they have now, or none. To be called before any of
  // these is moved to the left.
  void add(const Counts& hidden);
  // Writes what this run knows, should somebody else have taken it out of the store.
  void save();
  // What stands in the record and is not hidden, with the most items it had while it was; at
  // least 1.
  Counts owed(const std::set<std::string>& hidden) const;
  // All its items have been seen on the right of the boundary.
  void settle(const std::string& bundleId);

 private:
  std::vector<std::string> present() const;

  const Preferences preferences_;
  // In order of joining, an application as many times as it has items. What this run knows holds
  // also when somebody else writes the store.
  std::vector<std::string> known_;
};

}  // namespace tarnwick
