#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/hiding/menu_bar_controller.h"
#include "core/ports/desktop.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

// Has the controller do what the store says when that was changed, by whatever hand: handle and
// panel are drawn anew, and what joined or left the hidden set is stowed or released. Owned by the
// application delegate.
class StoreFollower {
 public:
  StoreFollower(DefaultsStore& defaults, std::weak_ptr<MenuBarController> controller);

 private:
  struct Stored {
    std::set<std::string> hidden;
    std::vector<AppGroup> groups;
    int columns;
    PanelIconStyle panelStyle;
    HandleIconStyle handleStyle;
    bool operator==(const Stored&) const = default;
  };

  void follow();
  Stored read() const;

  const Preferences preferences_;
  const std::weak_ptr<MenuBarController> controller_;
  Stored seen_;
  Registration observer_;
};

}  // namespace tarnwick
