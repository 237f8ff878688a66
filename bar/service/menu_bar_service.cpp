#include "bar/service/menu_bar_service.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPointer>
#include <utility>

#include "common/barprotocol/introspection.h"
#include "common/barprotocol/wire.h"

namespace tarnwick::bar {

namespace {

constexpr quint32 version = 1;
constexpr int nameTimeoutMs = 25'000;

QString serviceName() {
  return QStringLiteral("org.tarnwick.MenuBar1");
}
QString objectPath() {
  return QStringLiteral("/org/tarnwick/MenuBar1");
}
QString interfaceName() {
  return QStringLiteral("org.tarnwick.MenuBar1");
}
QString propertiesInterface() {
  return QStringLiteral("org.freedesktop.DBus.Properties");
}

}  // namespace

struct MenuBarService::Method {
  const char* name;
  const char* signature;
  std::optional<Capability> needs;
  void (MenuBarService::*run)(const QDBusMessage&, qint32 pid);
};

const MenuBarService::Method MenuBarService::methods[] = {
    {"Items", "", Capability::accessibility, &MenuBarService::items},
    {"Press", "t", Capability::accessibility, &MenuBarService::press},
    {"PressAt", "t(dd)", Capability::accessibility, &MenuBarService::pressAt},
    {"Cancel", "t", Capability::accessibility, &MenuBarService::cancel},
    {"Render", "tuu", Capability::screenCapture, &MenuBarService::render},
    {"AddItem", "sd", {}, &MenuBarService::addItem},
    {"SetLength", "td", {}, &MenuBarService::setLength},
    {"PlaceLeftOf", "tt", {}, &MenuBarService::placeLeftOf},
    {"RemoveItem", "t", {}, &MenuBarService::removeItem},
    {"OwnFrame", "t", {}, &MenuBarService::ownFrame},
    {"SetImage", "t(dd)uuayb", {}, &MenuBarService::setImage},
    // Asks for its capability itself: without it nothing happens and nothing is said.
    {"PostPointerEvent", "u(dd)u", {}, &MenuBarService::postPointerEvent},
    {"HasAccess", "s", {}, &MenuBarService::hasAccess},
    {"RequestAccess", "s", {}, &MenuBarService::requestAccess},
    {"ShowPane", "s", {}, &MenuBarService::showPane},
};

MenuBarService::MenuBarService(Board& board, Callers& callers, AccessControl& access,
                               const Appearance& appearance, std::function<bool()> isButtonDown,
                               QDBusConnection bus, QObject* parent)
    : QDBusVirtualObject(parent),
      board_(board),
      callers_(callers),
      access_(access),
      appearance_(appearance),
      bus_(std::move(bus)),
      native_(board),
      hand_(std::move(isButtonDown)) {
  registerWireTypes();
  connect(&callers_, &Callers::gone, this, &MenuBarService::callerGone);
  connect(&board_, &Board::itemsChanged, this,
          [this] { emitSignal(QStringLiteral("ItemsChanged")); });
  connect(&board_, &Board::applicationAppeared, this,
          [this](qint32 pid) { emitSignal(QStringLiteral("ApplicationAppeared"), {pid}); });
  connect(&access_, &AccessControl::changed, this,
          [this](const QString& name, Capability capability, bool granted) {
            emitTo(name, QStringLiteral("AccessChanged"), {toName(capability), granted});
          });
  connect(&native_, &NativeItems::clicked, this,
          [this](const QString& owner, ItemId id, Qt::MouseButton button,
                 Qt::KeyboardModifiers modifiers, QPointF at) {
            const quint32 number = button == Qt::LeftButton ? 1 : 3;
            emitTo(owner, QStringLiteral("ItemClicked"),
                   {QVariant::fromValue<qulonglong>(id), number, fromQtModifiers(modifiers), at});
          });
}

bool MenuBarService::start() {
  if (!bus_.registerVirtualObject(objectPath(), this)) return false;
  QDBusMessage request = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
  constexpr quint32 waitInQueue = 0;
  request << serviceName() << waitInQueue;
  auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(request, nameTimeoutMs), this);
  connect(call, &QDBusPendingCallWatcher::finished, this, [](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    const QDBusPendingReply<quint32> answer = *finished;
    if (answer.isError()) {
      qWarning("no name on the session bus: %s", qPrintable(answer.error().message()));
    }
  });
  return true;
}

void MenuBarService::setFrame(const QRectF& frame) {
  if (frame == frame_) return;
  frame_ = frame;
  QDBusMessage signal = QDBusMessage::createSignal(objectPath(), propertiesInterface(),
                                                   QStringLiteral("PropertiesChanged"));
  signal << interfaceName() << QVariantMap{{QStringLiteral("Frame"), frame_}} << QStringList();
  bus_.send(signal);
}

QString MenuBarService::introspect(const QString&) const {
  return QString::fromUtf8(menuBarIntrospection);
}

bool MenuBarService::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
  if (message.interface() == propertiesInterface()) {
    handleProperties(message);
    return true;
  }
  if (!message.interface().isEmpty() && message.interface() != interfaceName()) return false;
  for (const Method& method : methods) {
    if (message.member() != QLatin1String(method.name)) continue;
    if (message.signature() != QLatin1String(method.signature)) {
      invalid(
          message,
          QStringLiteral("%1 takes (%2)").arg(message.member(), QLatin1String(method.signature)));
    } else {
      callers_.identify(message.service(), [self = QPointer(this), &method, message](qint32 pid) {
        if (self) self->call(method, message, pid);
      });
    }
    return true;
  }
  fail(message, QDBusError::errorString(QDBusError::UnknownMethod),
       QStringLiteral("No such method"));
  return true;
}

void MenuBarService::call(const Method& method, const QDBusMessage& message, qint32 pid) {
  if (pid == 0) {
    return fail(message, QDBusError::errorString(QDBusError::Failed),
                QStringLiteral("The calling process could not be told"));
  }
  if (method.needs && !access_.allows(pid, *method.needs)) {
    fail(message, QStringLiteral("org.tarnwick.MenuBar1.Error.AccessDenied"),
         QStringLiteral("This needs the capability \"%1\"").arg(toName(*method.needs)));
    return;
  }
  (this->*method.run)(message, pid);
}

void MenuBarService::handleProperties(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  const QString member = message.member();
  const QString signature = message.signature();
  const bool ours = !arguments.isEmpty() && (arguments[0].toString() == interfaceName() ||
                                             arguments[0].toString().isEmpty());
  if (member == QLatin1String("GetAll") && signature == QLatin1String("s")) {
    QVariantMap all;
    if (ours) {
      for (const QString& name : {QStringLiteral("Version"), QStringLiteral("Frame")}) {
        all[name] = property(name);
      }
    }
    reply(message, {all});
  } else if (member == QLatin1String("Get") && signature == QLatin1String("ss")) {
    const QVariant value = ours ? property(arguments[1].toString()) : QVariant();
    if (value.isValid()) {
      reply(message, {QVariant::fromValue(QDBusVariant(value))});
    } else {
      fail(message, QDBusError::errorString(QDBusError::UnknownProperty),
           QStringLiteral("No such property"));
    }
  } else if (member == QLatin1String("Set") && signature == QLatin1String("ssv")) {
    fail(message, QDBusError::errorString(QDBusError::PropertyReadOnly),
         QStringLiteral("Properties can only be read"));
  } else {
    fail(message, QDBusError::errorString(QDBusError::UnknownMethod),
         QStringLiteral("No such method"));
  }
}

QVariant MenuBarService::property(const QString& name) const {
  if (name == QLatin1String("Version")) return version;
  if (name == QLatin1String("Frame")) return frame_;
  return {};
}

void MenuBarService::callerGone(const QString& name) {
  if (name == poster_) {
    poster_.clear();
    board_.leftButton(Board::Hand::posted, Board::Phase::cancel, {}, 0);
  }
  native_.dropOwner(name);
}

void MenuBarService::reply(const QDBusMessage& message, const QVariantList& values) {
  if (message.isReplyRequired()) bus_.send(message.createReply(values));
}

void MenuBarService::fail(const QDBusMessage& message, const QString& error, const QString& text) {
  if (message.isReplyRequired()) bus_.send(message.createErrorReply(error, text));
}

void MenuBarService::invalid(const QDBusMessage& message, const QString& text) {
  fail(message, QDBusError::errorString(QDBusError::InvalidArgs), text);
}

void MenuBarService::noSuchItem(const QDBusMessage& message) {
  fail(message, QStringLiteral("org.tarnwick.MenuBar1.Error.NoSuchItem"),
       QStringLiteral("No such item for this"));
}

void MenuBarService::finish(const QDBusMessage& message, NativeItems::Error error) {
  switch (error) {
    case NativeItems::Error::none:
      return reply(message);
    case NativeItems::Error::invalid:
      return invalid(message,
                     QStringLiteral("A name, length, size, byte count or place out of bounds"));
    case NativeItems::Error::limit:
      return fail(message, QDBusError::errorString(QDBusError::LimitsExceeded),
                  QStringLiteral("Too many items"));
    case NativeItems::Error::noSuchItem:
      return noSuchItem(message);
  }
}

void MenuBarService::emitSignal(const QString& name, const QVariantList& values) {
  QDBusMessage signal = QDBusMessage::createSignal(objectPath(), interfaceName(), name);
  signal.setArguments(values);
  bus_.send(signal);
}

void MenuBarService::emitTo(const QString& connection, const QString& name,
                            const QVariantList& values) {
  QDBusMessage signal =
      QDBusMessage::createTargetedSignal(connection, objectPath(), interfaceName(), name);
  signal.setArguments(values);
  bus_.send(signal);
}

}  // namespace tarnwick::bar
