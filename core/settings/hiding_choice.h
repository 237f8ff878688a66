#pragma once

#include <string>

#include "core/hiding/menu_bar_controller.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

// Has the controller run a stow pass for the hidden set as it is now: at once, or as soon as the
// pass that is running has ended.
void enforceSoon(MenuBarController& controller);

// The user wants an application hidden, or no longer. Stored first, then told to the controller,
// which reads the stored set. One that is no longer hidden leaves its group. False when it could
// not be stored; nothing is changed then.
bool chooseHidden(const Preferences& preferences, MenuBarController& controller,
                  const std::string& bundleId, bool hidden);

}  // namespace tarnwick
