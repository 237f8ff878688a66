#include "bar/row/key_order.h"

#include <algorithm>
#include <unordered_set>

namespace tarnwick::bar {

std::vector<std::string> mergedOrder(std::vector<std::string> ours,
                                     const std::vector<std::string>& theirs, std::size_t limit) {
  std::unordered_set<std::string> known(ours.begin(), ours.end());
  auto place = ours.begin();
  for (const std::string& key : theirs) {
    if (known.insert(key).second) {
      if (ours.size() >= limit) continue;
      place = ours.insert(place, key) + 1;
    } else {
      place = std::find(ours.begin(), ours.end(), key);
      if (place != ours.end()) ++place;
    }
  }
  return ours;
}

}  // namespace tarnwick::bar
