#include "utility/bar_client/bus_names.h"

#include <signal.h>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

namespace {

constexpr int daemonDeadline = 5000;   // milliseconds
constexpr qsizetype mostNames = 2000;  // unique ones among them

QDBusMessage daemonCall(const QString& method) {
  return QDBusMessage::createMethodCall(dbus::daemonName, dbus::daemonPath, dbus::daemonName,
                                        method);
}

bool lives(std::int32_t pid) {
  return kill(pid, 0) == 0 || errno == EPERM;
}

}  // namespace

BusNames::BusNames(const QDBusConnection& bus, std::function<void()> changed)
    : bus_(bus), changed_(std::move(changed)) {
  refresh();
}

void BusNames::refresh() {
  again_ = true;
  if (open_ == 0) listNames();
}

// One round at a time; what is asked for meanwhile is one more.
void BusNames::listNames() {
  again_ = false;
  found_.clear();
  call(daemonCall(QStringLiteral("ListNames")), [this](const QDBusMessage& answer) {
    const QDBusPendingReply<QStringList> reply = answer;
    if (reply.isError()) return void(found_ = owners_);
    const QStringList names = reply.value();
    for (const QString& name : names.first(std::min(names.size(), mostNames))) ask(name);
  });
}

// A name that is still owned is taken to be so by the same process while that lives.
void BusNames::ask(const QString& name) {
  if (name.startsWith(u':')) return;
  if (const auto known = owners_.find(name); known != owners_.end() && lives(known->second)) {
    found_.insert(*known);
    return;
  }
  auto message = daemonCall(QStringLiteral("GetConnectionUnixProcessID"));
  message << name;
  call(message, [this, name](const QDBusMessage& answer) {
    const QDBusPendingReply<uint> reply = answer;
    if (!reply.isError()) found_[name] = static_cast<std::int32_t>(reply.value());
  });
}

// The last answer of a round ends it.
void BusNames::call(const QDBusMessage& message,
                    std::function<void(const QDBusMessage&)> answered) {
  ++open_;
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, daemonDeadline), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, answered = std::move(answered)](QDBusPendingCallWatcher* done) {
            done->deleteLater();
            answered(done->reply());
            if (--open_ > 0) return;
            if (std::exchange(owners_, found_) != found_) changed_();
            if (again_) listNames();
          });
}

std::vector<std::string> BusNames::of(std::int32_t pid) const {
  std::vector<std::string> names;
  for (const auto& [name, owner] : owners_) {
    if (owner == pid) names.push_back(name.toStdString());
  }
  return names;
}

}  // namespace tarnwick
