#pragma once

#include <cstdint>
#include <functional>

#include "common/base/registration.h"

namespace tarnwick::KeyboardShortcuts {

// One shortcut as it is registered with the desktop, whoever uses it. Owned by the module's table;
// the center knows it weakly. Destroying it gives the combination back.
struct HotKey {
  std::int64_t carbonKeyCode = 0;
  std::int64_t carbonModifiers = 0;
  std::function<void()> onKeyDown;
  std::function<void()> onKeyUp;
  std::function<void()> onRegistrationFailed;  // may be empty; called when it cannot be had again
  std::int64_t id = 0;                         // the center's; never used twice
  Registration centerEntry;                    // in the center's table
  Registration eventHotKeyRef;                 // with the desktop; empty while paused
};

}  // namespace tarnwick::KeyboardShortcuts
