#pragma once

#include <string>

#include "hiding/menu_bar_controller.h"
#include "prefs/preferences.h"

namespace tarnwick {

// The user wants an application hidden, or no longer. Stored first, then told to the controller,
// which reads the stored set. One that is no longer hidden leaves its group.
void chooseHidden(const Preferences& preferences, MenuBarController& controller,
                  const std::string& bundleId, bool hidden);

}  // namespace tarnwick
