#pragma once

#include <QDBusConnection>
#include <QObject>

namespace tarnwick {

// Whether the session bus can be found: by $DBUS_SESSION_BUS_ADDRESS, unless that says
// "autolaunch:", or by this user's socket $XDG_RUNTIME_DIR/bus. To be asked before anything uses
// the bus: otherwise the bus library would start a bus of its own on this X server, which no other
// program uses.
bool hasSessionBus();

// Tells the session manager (XSMP), if there is one, not to start this program with the session:
// somebody else does that. To be called once, between the QApplication and its event loop.
void neverRestartWithSession();

// Ends the event loop with exit code 1 and a line on stderr when the session bus goes: the session
// has ended, or nobody can reach this program any more.
class SessionBusWatch : public QObject {
  Q_OBJECT

 public:
  // `program` is the name that the line begins with.
  SessionBusWatch(QDBusConnection bus, const char* program);

 private slots:
  void lost();

 private:
  const char* const program_;
};

}  // namespace tarnwick
