#pragma once

#include <QStringList>
#include <atomic>

#include "utility/desktop_shortcuts/combination.h"

namespace tarnwick::shortcuts {

// What GNOME, MATE or Cinnamon binds, its own shortcuts and the user's; empty for other desktops.
// `names` are those of XDG_CURRENT_DESKTOP. Runs programs and waits for them.
Combinations readGsettings(const QStringList& names, const std::atomic<bool>& stopped);

}  // namespace tarnwick::shortcuts
