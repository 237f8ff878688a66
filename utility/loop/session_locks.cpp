#include "utility/loop/session_locks.h"

#include <utility>

namespace tarnwick {

// Signals of any sender: each desktop has a screen saver of its own.
void SessionLocks::listen() {
  if (std::exchange(listens_, true)) return;
  QDBusConnection system = QDBusConnection::systemBus();
  system.connect({}, {}, "org.freedesktop.login1.Session", "Lock", this, SLOT(locking()));
  system.connect({}, {}, "org.freedesktop.login1.Manager", "PrepareForSleep", this,
                 SLOT(changed(bool)));
  for (const char* desktop : {"freedesktop", "gnome", "mate", "cinnamon", "xfce"}) {
    sessionBus_.connect({}, {}, QStringLiteral("org.%1.ScreenSaver").arg(desktop), "ActiveChanged",
                        this, SLOT(changed(bool)));
  }
}

void SessionLocks::changed(bool active) {
  if (active) locking_.notify();
}

}  // namespace tarnwick
