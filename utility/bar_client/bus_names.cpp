#include "utility/bar_client/bus_names.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

namespace {

constexpr int daemonDeadline = 5000;  // milliseconds
constexpr std::size_t mostNames = 1000;

QDBusMessage daemonCall(const QString& method) {
  return QDBusMessage::createMethodCall(dbus::daemonName, dbus::daemonPath, dbus::daemonName,
                                        method);
}

}  // namespace

BusNames::BusNames(const QDBusConnection& bus, std::function<void()> changed)
    : bus_(bus), changed_(std::move(changed)) {
  bus_.connect(dbus::daemonName, dbus::daemonPath, dbus::daemonName,
               QStringLiteral("NameOwnerChanged"), this,
               SLOT(onOwnerChanged(QString, QString, QString)));
  auto* const names = new QDBusPendingCallWatcher(
      bus_.asyncCall(daemonCall(QStringLiteral("ListNames")), daemonDeadline), this);
  connect(names, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
    call->deleteLater();
    const QDBusPendingReply<QStringList> reply = *call;
    if (reply.isError()) return;
    for (const QString& name : reply.value()) ask(name);
  });
}

std::vector<std::string> BusNames::of(std::int32_t pid) const {
  std::vector<std::string> names;
  for (const auto& [name, owner] : owners_) {
    if (owner == pid) names.push_back(name.toStdString());
  }
  return names;
}

void BusNames::onOwnerChanged(const QString& name, const QString&, const QString& now) {
  if (owners_.erase(name) > 0) changed_();
  if (!now.isEmpty()) ask(name);
}

// One question about a name at a time, however often it changes hands.
void BusNames::ask(const QString& name) {
  if (name.startsWith(u':')) return;
  if (const auto asked = asked_.find(name); asked != asked_.end()) {
    asked->second = true;
    return;
  }
  if (owners_.size() + asked_.size() >= mostNames) return;
  auto message = daemonCall(QStringLiteral("GetConnectionUnixProcessID"));
  message << name;
  asked_.emplace(name, false);
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, daemonDeadline), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, name](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            const bool again = asked_.extract(name).mapped();
            if (again) return ask(name);
            const QDBusPendingReply<uint> reply = *call;
            if (reply.isError()) return;
            owners_[name] = static_cast<std::int32_t>(reply.value());
            changed_();
          });
}

}  // namespace tarnwick
