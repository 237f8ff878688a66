#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/base/geometry.h"
#include "common/base/registration.h"
#include "core/ports/accessibility.h"

namespace tarnwick {

struct MenuItem {
  std::string title;
  bool enabled = true;
  bool separator = false;
  std::vector<MenuItem> submenu;  // an item with one cannot be chosen itself
  std::optional<AXElement> representedObject;
  bool operator==(const MenuItem&) const = default;
};

using Menu = std::vector<MenuItem>;

struct MenuOutcome {
  // Also when the menu was taken down because what it stood for had gone: nothing is dismissed
  // then.
  bool itemChosen = false;
  std::optional<AXElement> representedObject;  // of the chosen item
};

// Pop-up menus of our own.
class Menus {
 public:
  virtual ~Menus() = default;

  // Shows the menu with its top-left corner at `location`, moved only as far as the monitor needs,
  // and takes keyboard and pointer until an item is chosen or the menu dismissed. `callback` is
  // called once, in a later turn, after the menu has closed; the rest of the process goes on
  // meanwhile. Dropping the registration closes the menu without a callback.
  [[nodiscard]] virtual Registration popUp(const Menu& menu, Point location,
                                           std::function<void(const MenuOutcome&)> callback) = 0;
};

}  // namespace tarnwick
