#include "harness/accessible_tree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QUuid>
#include <algorithm>
#include <utility>

#include "harness/wait.h"

namespace tarnwick::test {

namespace {

constexpr auto launcher = "/usr/libexec/at-spi-bus-launcher";
constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto root = "/org/a11y/atspi/accessible/root";
constexpr int timeOut = 5000;  // milliseconds
constexpr int deepest = 30;

using Reference = std::pair<QString, QString>;  // bus name and path

std::vector<Reference> references(const QVariantList& reply) {
  std::vector<Reference> result;
  if (reply.isEmpty()) return result;
  const auto argument = reply.constFirst().value<QDBusArgument>();
  if (argument.currentType() != QDBusArgument::ArrayType) return result;
  argument.beginArray();
  while (!argument.atEnd()) {
    QString busName;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> busName >> path;
    argument.endStructure();
    result.emplace_back(busName, path.path());
  }
  argument.endArray();
  return result;
}

}  // namespace

AccessibleTree::AccessibleTree(PrivateDesktop& desktop) {
  desktop.unsetVariable("NO_AT_BRIDGE");
  desktop.setVariable("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
  desktop.start(launcher, {"--launch-immediately"});
  QString address;
  const bool answered = waitFor([&] {
    QDBusMessage message = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus",
                                                          "org.a11y.Bus", "GetAddress");
    message.setAutoStartService(false);
    const QDBusReply<QString> reply = desktop.bus().call(message, QDBus::Block, timeOut);
    address = reply.value();
    return !address.isEmpty();
  });
  const QString name = QUuid::createUuid().toString();
  bus_ = std::make_unique<QDBusConnection>(answered ? QDBusConnection::connectToBus(address, name)
                                                    : QDBusConnection(name));
}

AccessibleTree::~AccessibleTree() {
  QDBusConnection::disconnectFromBus(bus_->name());
}

QVariantList AccessibleTree::call(const QString& busName, const QString& path,
                                  const char* interface, const char* method,
                                  const QVariantList& arguments) {
  QDBusMessage message = QDBusMessage::createMethodCall(busName, path, interface, method);
  message.setArguments(arguments);
  const QDBusMessage reply = bus_->call(message, QDBus::Block, timeOut);
  return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

QString AccessibleTree::property(const QString& busName, const QString& path, const char* interface,
                                 const char* name) {
  const QVariantList reply =
      call(busName, path, "org.freedesktop.DBus.Properties", "Get", {interface, name});
  return reply.value(0).value<QDBusVariant>().variant().toString();
}

void AccessibleTree::collect(const QString& busName, const QString& path, int depth,
                             std::vector<Accessible>& into) {
  Accessible object{busName,
                    path,
                    property(busName, path, accessibleInterface, "Name"),
                    call(busName, path, accessibleInterface, "GetRoleName").value(0).toString(),
                    {}};
  const QString count = property(busName, path, "org.a11y.atspi.Text", "CharacterCount");
  if (!count.isEmpty()) {
    object.text = call(busName, path, "org.a11y.atspi.Text", "GetText", {0, count.toInt()})
                      .value(0)
                      .toString();
  }
  into.push_back(std::move(object));
  if (depth == deepest) return;
  for (const auto& [childBus, childPath] :
       references(call(busName, path, accessibleInterface, "GetChildren"))) {
    if (childBus == busName) collect(childBus, childPath, depth + 1, into);
  }
}

std::vector<Accessible> AccessibleTree::objectsOf(const QString& application) {
  std::vector<Accessible> result;
  for (const auto& [busName, path] :
       references(call("org.a11y.atspi.Registry", root, accessibleInterface, "GetChildren"))) {
    if (property(busName, path, accessibleInterface, "Name") == application) {
      collect(busName, path, 0, result);
    }
  }
  return result;
}

std::optional<Accessible> AccessibleTree::find(const QString& application, const QString& name,
                                               const QString& role) {
  for (const Accessible& object : objectsOf(application)) {
    if (object.name == name && (role.isEmpty() || object.role == role)) return object;
  }
  return std::nullopt;
}

QString AccessibleTree::descriptionOf(const Accessible& object) {
  return property(object.busName, object.path, accessibleInterface, "Description");
}

QRect AccessibleTree::frameOf(const Accessible& object) {
  constexpr uint ofTheScreen = 0;
  const QVariantList reply =
      call(object.busName, object.path, "org.a11y.atspi.Component", "GetExtents", {ofTheScreen});
  if (reply.isEmpty()) return {};
  const auto argument = reply.constFirst().value<QDBusArgument>();
  int x = 0, y = 0, width = 0, height = 0;
  argument.beginStructure();
  argument >> x >> y >> width >> height;
  argument.endStructure();
  return {x, y, width, height};
}

bool AccessibleTree::has(const Accessible& object, State state) {
  const QVariantList reply = call(object.busName, object.path, accessibleInterface, "GetState");
  if (reply.isEmpty()) return false;
  const auto words = qdbus_cast<QList<uint>>(reply.constFirst());
  const int bit = static_cast<int>(state);
  return bit / 32 < words.size() && (words[bit / 32] >> (bit % 32) & 1U) != 0;
}

QStringList AccessibleTree::actions(const Accessible& object) {
  QStringList names;
  const int count = property(object.busName, object.path, actionInterface, "NActions").toInt();
  for (int i = 0; i < count; ++i) {
    names += call(object.busName, object.path, actionInterface, "GetName", {i}).value(0).toString();
  }
  return names;
}

bool AccessibleTree::doAction(const Accessible& object, int index) {
  return call(object.busName, object.path, actionInterface, "DoAction", {index}).value(0).toBool();
}

QRect scrollToSetting(PrivateDesktop& desktop, AccessibleTree& tree, const QString& name,
                      const QString& role) {
  QRect place;
  const bool inSight = waitFor([&] {
    const auto objects = tree.objectsOf("tarnwick");
    const auto control =
        std::find_if(objects.begin(), objects.end(), [&](const Accessible& object) {
          return object.name == name && object.role == role &&
                 tree.has(object, AccessibleTree::State::visible);
        });
    if (control == objects.end()) return false;
    place = tree.frameOf(*control);
    const QRect window = desktop.windowFrame("Tarnwick");
    if (window.contains(place)) return true;
    desktop.click(window.center(), place.bottom() > window.bottom() ? 5 : 4);
    return false;
  });
  return inSight ? place : QRect();
}

}  // namespace tarnwick::test
