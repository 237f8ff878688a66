#pragma once

#include <QDBusConnection>
#include <QObject>

#include "common/base/callback_list.h"

namespace tarnwick {

// Tells when the session is being locked or the computer goes to sleep, as far as the desktop says
// so on the buses: org.freedesktop.login1 and the screen savers' ActiveChanged. Nobody is asked
// anything.
class SessionLocks : public QObject {
  Q_OBJECT

 public:
  explicit SessionLocks(const QDBusConnection& sessionBus) : sessionBus_(sessionBus) {}

  // Connects to the system's bus and waits for it, once. To be done before the keyboard is taken.
  void listen();
  Registration onLocking(std::function<void()> callback) {
    return locking_.add(std::move(callback));
  }

 private slots:
  void locking() { locking_.notify(); }
  void changed(bool active);

 private:
  QDBusConnection sessionBus_;
  bool listens_ = false;
  CallbackList locking_;
};

}  // namespace tarnwick
