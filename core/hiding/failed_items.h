#pragma once

#include <algorithm>
#include <vector>

#include "core/menubar/menu_bar_item_info.h"

namespace tarnwick {

// Status items for which something was done in vain. Once may have been bad luck; after the second
// time it is not worth another go that the user sees.
class FailedItems {
 public:
  void note(const AXElement& item, bool succeeded) {
    if (succeeded) {
      std::erase(failures_, item);
    } else if (!isHopeless(item)) {
      failures_.push_back(item);
    }
  }
  bool isHopeless(const AXElement& item) const { return std::ranges::count(failures_, item) > 1; }
  // Forgets items that are not among these.
  void keepOnly(const std::vector<MenuBarItemInfo>& items) {
    std::erase_if(failures_, [&](const AXElement& failed) {
      return std::ranges::find(items, failed, &MenuBarItemInfo::element) == items.end();
    });
  }
  void clear() { failures_.clear(); }

 private:
  std::vector<AXElement> failures_;  // an item once for each time
};

}  // namespace tarnwick
