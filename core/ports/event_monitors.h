#pragma once

#include <functional>

#include "common/base/registration.h"

namespace tarnwick {

// Watches the user's input without taking it away from anyone.
class EventMonitors {
 public:
  virtual ~EventMonitors() = default;

  // Called for each left or right press that goes to another application, wherever it lands; not
  // for presses on windows or status items of our own. Empty when the desktop refuses.
  virtual Registration addGlobalPressMonitor(std::function<void()> callback) = 0;
};

}  // namespace tarnwick
