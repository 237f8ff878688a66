#include "common/bus/session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QSessionManager>
#include <cstdio>
#include <cstdlib>

namespace tarnwick {

bool hasSessionBus() {
  const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
  if (!address.isEmpty()) return !address.startsWith("autolaunch:");
  const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
  struct stat file {};
  return !runtime.isEmpty() && stat((runtime + "/bus").constData(), &file) == 0 &&
         S_ISSOCK(file.st_mode) && file.st_uid == getuid();
}

// The toolkit tells the manager what was set at the end of each saving, of which the first comes as
// soon as the program has joined the session.
void neverRestartWithSession() {
  const auto never = [](QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
  };
  QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, qGuiApp, never);
  QObject::connect(qGuiApp, &QGuiApplication::saveStateRequest, qGuiApp, never);
}

SessionBusWatch::SessionBusWatch(QDBusConnection bus, const char* program) : program_(program) {
  bus.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
              SLOT(lost()));
}

void SessionBusWatch::lost() {
  std::fprintf(stderr, "%s: the session bus is gone\n", program_);
  QCoreApplication::exit(EXIT_FAILURE);
}

}  // namespace tarnwick
