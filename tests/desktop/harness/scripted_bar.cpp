#include "tests/desktop/harness/scripted_bar.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <algorithm>

namespace tarnwick::test {

QDBusArgument& operator<<(QDBusArgument& out, const BarItem& item) {
  out.beginStructure();
  out << item.id << item.pid << item.kind << item.hint << item.title << item.frame << item.busName
      << item.objectPath << item.menuPath;
  out.endStructure();
  return out;
}

// Only written; the type system wants both.
const QDBusArgument& operator>>(const QDBusArgument& in, BarItem&) {
  return in;
}

}  // namespace tarnwick::test

Q_DECLARE_METATYPE(tarnwick::test::BarItem)

namespace tarnwick::test {

ScriptedBar::ScriptedBar(std::unique_ptr<QDBusConnection> bus) : bus_(std::move(bus)) {
  qDBusRegisterMetaType<BarItem>();
  qDBusRegisterMetaType<QList<BarItem>>();
  bus_->registerVirtualObject(BarProxy::path, this);
  bus_->registerService(BarProxy::service);
}

ScriptedBar::~ScriptedBar() {
  QDBusConnection::disconnectFromBus(bus_->name());
}

QString ScriptedBar::introspect(const QString&) const {
  return {};
}

const ScriptedBar::Native* ScriptedBar::native(const QString& autosaveName) const {
  const auto found = std::find_if(natives.begin(), natives.end(), [&](const Native& native) {
    return native.autosaveName == autosaveName;
  });
  return found == natives.end() ? nullptr : &*found;
}

int ScriptedBar::drags() const {
  return static_cast<int>(std::count_if(events.begin(), events.end(),
                                        [](const PointerEvent& event) { return event.kind == 3; }));
}

void ScriptedBar::announceApplication(qint32 pid) {
  QDBusMessage signal =
      QDBusMessage::createSignal(BarProxy::path, BarProxy::service, "ApplicationAppeared");
  signal << pid;
  bus_->send(signal);
}

bool ScriptedBar::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  calls.push_back(message.member());
  const QVariantList values = answer(message);
  if (message.isReplyRequired() && !unanswered.contains(message.member())) {
    connection.send(message.createReply(values));
  }
  return true;
}

QVariantList ScriptedBar::answer(const QDBusMessage& message) {
  const QString method = message.member();
  const QVariantList arguments = message.arguments();
  if (method == "Get") {
    return {QVariant::fromValue(QDBusVariant(1U))};  // Version
  }
  if (method == "HasAccess" || method == "RequestAccess") {
    return {granted.contains(arguments.value(0).toString())};
  }
  if (method == "AddItem") {
    const uint pid = bus_->interface()->servicePid(message.service());
    natives.push_back({natives.size() + 1,
                       static_cast<qint32>(pid),
                       arguments.value(0).toString(),
                       {arguments.value(1).toDouble()}});
    return {QVariant::fromValue<qulonglong>(natives.back().id)};
  }
  if (method == "SetLength") {
    for (Native& native : natives) {
      if (native.id == arguments.value(0).toULongLong()) {
        native.lengths.push_back(arguments.value(1).toDouble());
      }
    }
  }
  if (method == "PostPointerEvent") {
    events.push_back({arguments.value(0).toUInt(), qdbus_cast<QPointF>(arguments.value(1)),
                      arguments.value(2).toUInt()});
    if (onPointerEvent) {
      onPointerEvent(events.back());
    }
  }
  if (method == "OwnFrame") {
    for (const BarItem& item : items()) {
      if (item.kind == "native" && item.id == arguments.value(0).toULongLong()) {
        return {item.frame};
      }
    }
  }
  return method == "Items" ? QVariantList{QVariant::fromValue(items())} : QVariantList();
}

QList<BarItem> ScriptedBar::items() const {
  QList<BarItem> all(foreign.begin(), foreign.end());
  double right = 800;
  for (const Native& native : natives) {
    BarItem item;
    item.id = native.id;
    item.pid = native.pid;
    item.kind = "native";
    item.hint = native.autosaveName;
    item.frame = {right - native.lengths.back(), 0, native.lengths.back(), 24};
    item.busName = ":1.0";
    right -= native.lengths.back();
    all.append(item);
  }
  return all;
}

}  // namespace tarnwick::test
