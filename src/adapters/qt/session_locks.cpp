#include "adapters/qt/session_locks.h"

#include <utility>

namespace tarnwick {

Registration SessionLocks::onLocking(std::function<void()> callback) {
  if (!std::exchange(listens_, true)) listen();
  return locking_.add(std::move(callback));
}

// Whoever sends them: each desktop has a screen saver of its own.
void SessionLocks::listen() {
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
