#include "harness/bar_proxy.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <algorithm>

#include "common/identity/identity.h"

namespace tarnwick::test {

BarProxy::BarProxy(QDBusConnection bus)
    : bus_(std::move(bus)),
      identities_(std::make_unique<desktop::IdentityResolver>(
          desktop::IdentityResolver::WindowHintsOf(), "/proc",
          [this](std::int32_t pid) { return namesOf(pid); })) {}

BarProxy::~BarProxy() = default;

std::vector<std::string> BarProxy::namesOf(std::int32_t pid) const {
  std::vector<std::string> names;
  for (const QString& name : bus_.interface()->registeredServiceNames().value()) {
    const bool wellKnown = !name.startsWith(':');
    if (wellKnown && bus_.interface()->servicePid(name).value() == static_cast<uint>(pid)) {
      names.push_back(name.toStdString());
    }
  }
  return names;
}

bool BarProxy::running() const {
  return bus_.interface()->isServiceRegistered(service);
}

QVariantList BarProxy::call(const QString& method, const QVariantList& arguments, int timeOut) {
  QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, method);
  message.setArguments(arguments);
  message.setAutoStartService(false);
  const QDBusMessage reply = bus_.call(message, QDBus::Block, timeOut);
  error_ = reply.type() == QDBusMessage::ErrorMessage ? reply.errorName() : QString();
  return reply.arguments();
}

BarItems BarProxy::items() {
  const QVariantList answer = call("Items");
  BarItems items;
  if (!error_.isEmpty() || answer.isEmpty()) {
    return items;
  }
  const auto list = answer.first().value<QDBusArgument>();
  if (list.currentSignature() != "a(tisss(dddd)sss)") {
    error_ = "wrong signature " + list.currentSignature();
    return items;
  }
  list.beginArray();
  while (!list.atEnd()) {
    BarItem item;
    list.beginStructure();
    list >> item.id >> item.pid >> item.kind >> item.hint >> item.title >> item.frame >>
        item.busName >> item.objectPath >> item.menuPath;
    list.endStructure();
    auto known = bundleIds_.find(item.pid);
    if (known == bundleIds_.end()) {
      const auto identity = identities_->identify(item.pid);
      known =
          bundleIds_
              .emplace(item.pid, identity ? QString::fromStdString(identity->bundleId) : QString())
              .first;
    }
    item.bundleId = known->second;
    items.push_back(item);
  }
  list.endArray();
  return items;
}

std::optional<BarItem> BarProxy::find(const QString& bundleIdOrHint) {
  for (const BarItem& item : items()) {
    if (item.bundleId == bundleIdOrHint || item.hint == bundleIdOrHint) {
      return item;
    }
  }
  return {};
}

BarItems BarProxy::itemsOf(const QString& bundleId) {
  BarItems all = items();
  std::erase_if(all, [&](const BarItem& item) { return item.bundleId != bundleId; });
  return all;
}

BarItems BarProxy::leftToRight() {
  BarItems all = items();
  std::stable_sort(all.begin(), all.end(), [](const BarItem& left, const BarItem& right) {
    return left.frame.x() < right.frame.x();
  });
  return all;
}

QRectF BarProxy::frame() {
  QDBusMessage message =
      QDBusMessage::createMethodCall(service, path, "org.freedesktop.DBus.Properties", "Get");
  message.setArguments({QString::fromLatin1(service), QStringLiteral("Frame")});
  const QDBusMessage reply = bus_.call(message, QDBus::Block, 5000);
  error_ = reply.type() == QDBusMessage::ErrorMessage ? reply.errorName() : QString();
  if (!error_.isEmpty()) {
    return {};
  }
  return qdbus_cast<QRectF>(reply.arguments().first().value<QDBusVariant>().variant());
}

bool BarProxy::hasAccess(const QString& capability) {
  const QVariantList answer = call("HasAccess", {capability});
  return !answer.isEmpty() && error_.isEmpty() && answer.first().toBool();
}

bool BarProxy::requestAccess(const QString& capability) {
  const QVariantList answer = call("RequestAccess", {capability}, 600'000);
  return !answer.isEmpty() && error_.isEmpty() && answer.first().toBool();
}

quint64 BarProxy::addItem(const QString& autosaveName, double length) {
  const QVariantList answer = call("AddItem", {autosaveName, length});
  return answer.isEmpty() || !error_.isEmpty() ? 0 : answer.first().toULongLong();
}

void BarProxy::press(quint64 id) {
  call("Press", {id});
}

BarProxy::Picture BarProxy::render(quint64 id, uint width, uint height) {
  const QVariantList answer = call("Render", {id, width, height});
  Picture picture;
  if (error_.isEmpty() && !answer.isEmpty()) {
    // One structure or three values: the members are the same.
    if (answer.size() == 3) {
      return {answer[0].toUInt(), answer[1].toUInt(), answer[2].toByteArray()};
    }
    const auto in = answer.first().value<QDBusArgument>();
    in.beginStructure();
    in >> picture.width >> picture.height >> picture.rgba;
    in.endStructure();
  }
  return picture;
}

void BarProxy::postPointer(Pointer kind, QPointF at, std::uint32_t modifiers) {
  QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, "PostPointerEvent");
  message.setArguments({static_cast<uint>(kind), at, modifiers});
  bus_.send(message);
}

void BarProxy::drag(const BarItem& item, double toX) {
  const QPointF from = item.frame.center();
  postPointer(Pointer::press, from);
  for (int step = 1; step <= 6; ++step) {
    postPointer(Pointer::drag, {from.x() + (toX - from.x()) * step / 6, from.y()});
  }
  postPointer(Pointer::release, {toX, from.y()});
}

QString describe(const BarItems& items) {
  QString text = QStringLiteral("%1  %2  %3  %4\n")
                     .arg("application", -26)
                     .arg("kind", -7)
                     .arg("item", -26)
                     .arg("x .. right edge (points)");
  for (const BarItem& item : items) {
    text += QStringLiteral("%1  %2  %3  %4 .. %5\n")
                .arg(item.bundleId, -26)
                .arg(item.kind, -7)
                .arg(item.hint.left(26), -26)
                .arg(item.frame.left(), 10, 'f', 1)
                .arg(item.frame.left() + item.frame.width(), 8, 'f', 1);
  }
  return text;
}

}  // namespace tarnwick::test
