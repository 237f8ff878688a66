#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

#include "utility/desktop_shortcuts/combination.h"

namespace tarnwick::shortcuts {

// Which desktop runs, and so whose configuration holds.
struct RunningDesktop {
  QStringList names;      // of XDG_CURRENT_DESKTOP
  QString windowManager;  // its own name; empty without one
  QString openboxFile;    // that openbox was started with; empty for the usual one
};

struct Configuration {
  Combinations combinations;
  QStringList files;  // whose changes matter
};

// Reads files and runs programs for the settings of GNOME and its relatives, so not for the main
// thread. Gives up soon after `stopped` is set.
Configuration readConfiguration(const RunningDesktop& desktop, const std::atomic<bool>& stopped);

// An i3 configuration with the files that it includes in their places; adds all of them to `files`.
QByteArray i3Text(const QString& file, QStringList& files);

}  // namespace tarnwick::shortcuts
