#include "bar/access/callers.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace tarnwick::bar {

namespace {

constexpr int answerTimeoutMs = 5'000;
constexpr std::size_t maximumWaiting = 1'000;  // calls of one connection, until it is known

}  // namespace

Callers::Callers(QDBusConnection bus, QObject* parent) : QObject(parent), bus_(std::move(bus)) {}

void Callers::identify(const QString& name, std::function<void(qint32)> then) {
  const auto [found, isNew] = callers_.try_emplace(name);
  Caller& caller = found->second;
  if (caller.pid != 0) return then(caller.pid);
  if (caller.waiting.size() >= maximumWaiting) return then(0);
  caller.waiting.push_back(std::move(then));
  if (!isNew) return;
  // Watched first: a connection that goes before the question arrives answers it with an error.
  watch(name, true);
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
  question << name;
  auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(question, answerTimeoutMs), this);
  connect(call, &QDBusPendingCallWatcher::finished, this,
          [this, name](QDBusPendingCallWatcher* finished) { answered(name, finished); });
}

std::vector<std::pair<QString, qint32>> Callers::known() const {
  std::vector<std::pair<QString, qint32>> known;
  for (const auto& [name, caller] : callers_) {
    if (caller.pid != 0) known.emplace_back(name, caller.pid);
  }
  return known;
}

void Callers::answered(const QString& name, QDBusPendingCallWatcher* call) {
  call->deleteLater();
  const auto found = callers_.find(name);
  if (found == callers_.end()) return;
  const QDBusPendingReply<quint32> reply = *call;
  const auto pid = reply.isError() ? 0 : static_cast<qint32>(reply.value());
  found->second.pid = pid;
  const auto waiting = std::exchange(found->second.waiting, {});
  if (pid == 0) drop(name);
  for (const auto& then : waiting) then(pid);
}

void Callers::ownerChanged(const QString& name, const QString&, const QString& after) {
  if (after.isEmpty() && callers_.count(name) != 0) drop(name);
}

void Callers::drop(const QString& name) {
  watch(name, false);
  callers_.erase(name);
  emit gone(name);
}

void Callers::watch(const QString& name, bool on) {
  const QString bus = QStringLiteral("org.freedesktop.DBus");
  const QString path = QStringLiteral("/org/freedesktop/DBus");
  const QString signal = QStringLiteral("NameOwnerChanged");
  const char* const slot = SLOT(ownerChanged(QString, QString, QString));
  if (on) {
    bus_.connect(bus, path, bus, signal, {name}, QString(), this, slot);
  } else {
    bus_.disconnect(bus, path, bus, signal, {name}, QString(), this, slot);
  }
}

}  // namespace tarnwick::bar
