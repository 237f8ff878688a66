#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "bar/sni/item_address.h"

namespace tarnwick::bar {

// The object /StatusNotifierWatcher, interface org.kde.StatusNotifierWatcher: where items register.
// Only the bus side; what is registered is decided by its owner. This process is itself a host, so
// that there is always one.
class Watcher : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
  Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items SCRIPTABLE true)
  Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost SCRIPTABLE true)
  Q_PROPERTY(int ProtocolVersion READ protocolVersion SCRIPTABLE true)

 public:
  static QString serviceName() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }

  // An item asks to be shown. `sender` is the unique name of who asks.
  using Registration = std::function<void(const ItemAddress& address, const QString& sender)>;

  explicit Watcher(Registration onRegistration, QObject* parent = nullptr);

  // Puts the object on the bus; false when it cannot be.
  bool exportObject();

  // While the process owns the watcher's name: signals are sent only then.
  void setServing(bool serving);

  QStringList items() const { return items_; }
  void addItem(const QString& published);
  void removeItem(const QString& published);

  bool hasHost() const { return true; }
  int protocolVersion() const { return 0; }

 public slots:
  Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service);
  Q_SCRIPTABLE void RegisterStatusNotifierHost(const QString& service);

 signals:
  Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString& service);
  Q_SCRIPTABLE void StatusNotifierItemUnregistered(const QString& service);
  Q_SCRIPTABLE void StatusNotifierHostRegistered();
  Q_SCRIPTABLE void StatusNotifierHostUnregistered();

 private:
  void announceItems();

  const Registration onRegistration_;
  QStringList items_;
  bool serving_ = false;
  QTimer announcement_;
};

}  // namespace tarnwick::bar
