#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <chrono>
#include <functional>
#include <utility>

namespace tarnwick {

// Sends a call on the session bus without waiting and without starting a service for it. `done`
// gets the reply or the error once, in a later turn of the loop; it is dropped with `context`.
inline void callBus(QDBusMessage call, std::chrono::milliseconds timeout, QObject* context,
                    std::function<void(const QDBusMessage&)> done) {
  call.setAutoStartService(false);
  auto* watcher = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(timeout.count())), context);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                   [done = std::move(done)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     done(finished->reply());
                   });
}

// Sends a call whose answer nobody waits for.
inline void sendBus(QDBusMessage call) {
  call.setAutoStartService(false);
  QDBusConnection::sessionBus().send(call);
}

// A call of the bus itself.
inline QDBusMessage busDaemonCall(const QString& method, const QVariantList& arguments = {}) {
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), method);
  call.setArguments(arguments);
  return call;
}

// Whether an error says that the object or member asked for is not there (any more), as opposed to
// a slow or failing owner.
inline bool saysAbsent(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ErrorMessage) return false;
  const QString name = reply.errorName();
  for (const char* error : {"UnknownObject", "UnknownMethod", "UnknownInterface", "UnknownProperty",
                            "ServiceUnknown", "NameHasNoOwner"}) {
    if (name == QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(error)) return true;
  }
  return false;
}

}  // namespace tarnwick
