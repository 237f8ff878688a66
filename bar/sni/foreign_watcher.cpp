#include "bar/sni/foreign_watcher.h"

#include <QCoreApplication>
#include <QDBusVariant>
#include <algorithm>
#include <utility>

#include "bar/sni/watcher.h"
#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

using namespace std::chrono_literals;

constexpr auto answerTimeout = 5s;
constexpr qsizetype maximumItems = 2'000;

QString objectPath() {
  return QStringLiteral("/StatusNotifierWatcher");
}

}  // namespace

ForeignWatcher::ForeignWatcher(QString owner, QObject* parent)
    : QObject(parent), owner_(std::move(owner)) {
  subscribe(true);
  const QString host =
      QStringLiteral("org.kde.StatusNotifierHost-%1").arg(QCoreApplication::applicationPid());
  // Neither the name nor an error matters: some watchers know no further hosts.
  callBus(busDaemonCall(QStringLiteral("RequestName"), {host, 0U}), answerTimeout, this,
          [](const QDBusMessage&) {});
  QDBusMessage registration = QDBusMessage::createMethodCall(
      owner_, objectPath(), Watcher::serviceName(), QStringLiteral("RegisterStatusNotifierHost"));
  registration.setArguments({host});
  callBus(registration, answerTimeout, this, [](const QDBusMessage&) {});
  readList();
}

ForeignWatcher::~ForeignWatcher() {
  subscribe(false);
}

void ForeignWatcher::subscribe(bool on) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  const auto change = [&](const QString& signal, const char* slot) {
    const QString interface = Watcher::serviceName();
    if (on) {
      bus.connect(owner_, objectPath(), interface, signal, this, slot);
    } else {
      bus.disconnect(owner_, objectPath(), interface, signal, this, slot);
    }
  };
  change(QStringLiteral("StatusNotifierItemRegistered"), SLOT(onRegistered(QDBusMessage)));
  change(QStringLiteral("StatusNotifierItemUnregistered"), SLOT(onUnregistered(QDBusMessage)));
}

void ForeignWatcher::readList() {
  dirty_ = reading_;
  if (std::exchange(reading_, true)) return;
  QDBusMessage call = QDBusMessage::createMethodCall(
      owner_, objectPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
      QStringLiteral("Get"));
  call.setArguments({Watcher::serviceName(), QStringLiteral("RegisteredStatusNotifierItems")});
  callBus(call, answerTimeout, this, [this](const QDBusMessage& reply) {
    reading_ = false;
    const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
    const bool isList = value.metaType().id() == QMetaType::QStringList;
    const QStringList items = isList ? value.toStringList().mid(0, maximumItems) : QStringList();
    for (const QString& item : items) {
      if (const auto address = parsePublished(item)) emit itemRegistered(*address);
    }
    if (dirty_) readList();
  });
}

void ForeignWatcher::onRegistered(const QDBusMessage& signal) {
  const QString item = signal.arguments().value(0).toString();
  if (const auto address = parsePublished(item)) {
    emit itemRegistered(*address);
  } else {
    readList();  // some watchers signal a mere path
  }
}

void ForeignWatcher::onUnregistered(const QDBusMessage& signal) {
  const auto address = parsePublished(signal.arguments().value(0).toString());
  if (address) emit itemUnregistered(*address);
}

}  // namespace tarnwick::bar
