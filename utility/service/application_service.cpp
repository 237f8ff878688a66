#include "utility/service/application_service.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <chrono>
#include <optional>
#include <string>

#include "core/prefs/preferences.h"
#include "core/settings/hiding_choice.h"

namespace tarnwick {

namespace {

const QString name = QStringLiteral("org.tarnwick.Tarnwick");
const QString path = QStringLiteral("/org/tarnwick/Tarnwick");
const QString interface = QStringLiteral("org.freedesktop.Application");
const QString ownInterface = QStringLiteral("org.tarnwick.Tarnwick");
const QString launchedSignal = QStringLiteral("Launched");

constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr int daemonDeadline = 5000;    // milliseconds
constexpr int activateDeadline = 2000;  // milliseconds
constexpr qsizetype longestIdentifier = 1000;
constexpr Duration revealLength = std::chrono::seconds(15);

QDBusMessage daemonCall(const QString& method) {
  return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                        QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus"), method);
}

// The one string of an action's parameters.
std::optional<std::string> identifierIn(const QVariantList& parameters) {
  if (parameters.size() != 1) return std::nullopt;
  QVariant parameter = parameters.constFirst();
  if (parameter.metaType() == QMetaType::fromType<QDBusVariant>()) {
    parameter = parameter.value<QDBusVariant>().variant();
  }
  const QString text = parameter.toString();
  if (parameter.userType() != QMetaType::QString || text.isEmpty() ||
      text.size() > longestIdentifier) {
    return std::nullopt;
  }
  return text.toStdString();
}

}  // namespace

ApplicationService::ApplicationService(const QDBusConnection& bus) : bus_(bus) {
  bus_.registerObject(path, this, QDBusConnection::ExportAllSlots);
  bus_.connect(bus_.baseService(), path, ownInterface, launchedSignal, this, SLOT(onLaunched()));
}

// Waits until it is free: a new instance may ask for it next.
ApplicationService::~ApplicationService() {
  auto release = daemonCall(QStringLiteral("ReleaseName"));
  release << name;
  bus_.call(release, QDBus::Block, daemonDeadline);
}

bool ApplicationService::claim() {
  auto request = daemonCall(QStringLiteral("RequestName"));
  request << name << doNotQueue;
  const QDBusMessage reply = bus_.call(request, QDBus::Block, daemonDeadline);
  if (reply.type() != QDBusMessage::ReplyMessage ||
      reply.arguments().value(0).toUInt() != primaryOwner) {
    return false;
  }
  // A message from this process to itself: the bus passes it on behind all that it had kept for
  // the owner of the name.
  return bus_.send(
      QDBusMessage::createTargetedSignal(bus_.baseService(), path, ownInterface, launchedSignal));
}

bool ApplicationService::activateOther() {
  QVariantMap platformData;
  const auto pass = [&](const char* variable, const QString& key) {
    const QString value = qEnvironmentVariable(variable);
    if (!value.isEmpty()) platformData.insert(key, value);
  };
  pass("DESKTOP_STARTUP_ID", QStringLiteral("desktop-startup-id"));
  pass("XDG_ACTIVATION_TOKEN", QStringLiteral("activation-token"));
  auto call = QDBusMessage::createMethodCall(name, path, interface, QStringLiteral("Activate"));
  call << platformData;
  call.setAutoStartService(false);
  return bus_.call(call, QDBus::Block, activateDeadline).type() == QDBusMessage::ReplyMessage;
}

void ApplicationService::serve(Desktop& desktop, std::weak_ptr<AppDelegate> delegate) {
  desktop_ = &desktop;
  delegate_ = std::move(delegate);
}

void ApplicationService::Activate(const QVariantMap&) {
  // The bus has started this process to deliver this very call: that is the launch.
  if (!launched_) return;
  if (const auto delegate = delegate_.lock()) {
    delegate->applicationShouldHandleReopen(false);
  } else if (calledFromDBus()) {
    sendErrorReply(QDBusError::Failed, QStringLiteral("It is about to end"));
  }
}

// There are no documents to open.
void ApplicationService::Open(const QStringList&, const QVariantMap& platformData) {
  Activate(platformData);
}

void ApplicationService::ActivateAction(const QString& action, const QVariantList& parameters,
                                        const QVariantMap&) {
  const auto identifier = identifierIn(parameters);
  const auto delegate = delegate_.lock();
  const auto controller = delegate ? delegate->menuBarController() : nullptr;
  if (action == QLatin1String("toggle-panel") && parameters.isEmpty()) {
    if (controller) controller->togglePanel();
  } else if (action == QLatin1String("reveal") && parameters.isEmpty()) {
    if (controller) controller->revealTemporarily(revealLength);
  } else if (identifier &&
             (action == QLatin1String("hide") || action == QLatin1String("release"))) {
    const bool hide = action == QLatin1String("hide");
    if (controller &&
        !chooseHidden(Preferences(desktop_->defaults), *controller, *identifier, hide)) {
      sendErrorReply(QDBusError::Failed, QStringLiteral("The settings cannot be written"));
    }
  } else {
    sendErrorReply(QDBusError::InvalidArgs,
                   QStringLiteral("The actions are toggle-panel and reveal, and hide and release, "
                                  "each with one string"));
  }
}

}  // namespace tarnwick
