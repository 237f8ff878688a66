#include "bar/sni/watcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <utility>

#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

// The list itself is sent once for a burst of registrations.
constexpr std::chrono::milliseconds announcementDelay{50};

QString objectPath() {
  return QStringLiteral("/StatusNotifierWatcher");
}

}  // namespace

Watcher::Watcher(Registration onRegistration, QObject* parent)
    : QObject(parent), onRegistration_(std::move(onRegistration)) {
  announcement_.setSingleShot(true);
  announcement_.callOnTimeout(this, &Watcher::announceItems);
}

bool Watcher::exportObject() {
  return QDBusConnection::sessionBus().registerObject(
      objectPath(), this,
      QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals |
          QDBusConnection::ExportScriptableProperties);
}

void Watcher::setServing(bool serving) {
  if (std::exchange(serving_, serving) == serving || !serving) return;
  emit StatusNotifierHostRegistered();
}

void Watcher::addItem(const QString& published) {
  if (items_.contains(published)) return;
  items_ << published;
  if (serving_) emit StatusNotifierItemRegistered(published);
  announcement_.start(announcementDelay);
}

void Watcher::removeItem(const QString& published) {
  if (items_.removeAll(published) == 0) return;
  if (serving_) emit StatusNotifierItemUnregistered(published);
  announcement_.start(announcementDelay);
}

void Watcher::RegisterStatusNotifierItem(const QString& service) {
  const QString sender = calledFromDBus() ? message().service() : QString();
  const std::optional<ItemAddress> address = parseRegistration(service, sender);
  if (!address) {
    sendErrorReply(QDBusError::InvalidArgs,
                   QStringLiteral("A bus name or an object path is expected"));
    return;
  }
  onRegistration_(*address, sender);
}

void Watcher::RegisterStatusNotifierHost(const QString& service) {
  Q_UNUSED(service)
  emit StatusNotifierHostRegistered();
}

void Watcher::announceItems() {
  QDBusMessage signal =
      QDBusMessage::createSignal(objectPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                 QStringLiteral("PropertiesChanged"));
  const QVariantMap changed{{QStringLiteral("RegisteredStatusNotifierItems"), items_}};
  signal.setArguments({serviceName(), changed, QStringList()});
  if (serving_) sendBus(signal);
}

}  // namespace tarnwick::bar
