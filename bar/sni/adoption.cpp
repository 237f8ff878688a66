#include "bar/sni/adoption.h"

#include <QDBusConnection>
#include <QXmlStreamReader>
#include <utility>

#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

using namespace std::chrono_literals;

constexpr auto answerTimeout = 500ms;
constexpr qsizetype maximumPlaces = 32;  // of one connection
constexpr qsizetype maximumXml = 64 * 1024;

QString ayatanaFolder() {
  return QStringLiteral("/org/ayatana/NotificationItem");
}

}  // namespace

Adoption::Adoption(std::function<bool(const QString&)> isKnown, QObject* parent)
    : QObject(parent), isKnown_(std::move(isKnown)) {
  callBus(busDaemonCall(QStringLiteral("ListNames")), answerTimeout, this,
          [this](const QDBusMessage& reply) {
            const QString own = QDBusConnection::sessionBus().baseService();
            const QStringList names = reply.arguments().value(0).toStringList();
            for (const QString& name : names) {
              if (isUniqueBusName(name) && name != own) owners_ << name;
            }
            next();
          });
}

void Adoption::next() {
  if (places_.isEmpty()) {
    while (!owners_.isEmpty() && isKnown_(owners_.constFirst())) owners_.removeFirst();
    if (owners_.isEmpty()) {
      deleteLater();
      return;
    }
    const QString owner = owners_.takeFirst();
    places_ = {{owner, QStringLiteral("/StatusNotifierItem")}, {owner, ayatanaFolder()}};
  }
  introspect(places_.takeFirst());
}

void Adoption::introspect(const ItemAddress& address) {
  const QDBusMessage call = QDBusMessage::createMethodCall(
      address.service, address.path, QStringLiteral("org.freedesktop.DBus.Introspectable"),
      QStringLiteral("Introspect"));
  callBus(call, answerTimeout, this, [this, address](const QDBusMessage& reply) {
    const QString xml = reply.arguments().value(0).toString();
    if (reply.type() == QDBusMessage::ReplyMessage && xml.size() <= maximumXml) {
      take(address, xml);
    } else if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply")) {
      places_.clear();  // it sleeps: its other places do not answer either
    }
    next();
  });
}

void Adoption::take(const ItemAddress& address, const QString& xml) {
  const bool isFolder = address.path == ayatanaFolder();
  QXmlStreamReader reader(xml);
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    const QString name = reader.attributes().value(QLatin1String("name")).toString();
    if (reader.name() == QLatin1String("interface") &&
        name == QLatin1String("org.kde.StatusNotifierItem")) {
      emit found(address);
    } else if (reader.name() == QLatin1String("node") && isFolder &&
               places_.size() < maximumPlaces) {
      const QString path = ayatanaFolder() + u'/' + name;
      if (!name.isEmpty() && isObjectPath(path)) places_ << ItemAddress{address.service, path};
    }
  }
}

}  // namespace tarnwick::bar
