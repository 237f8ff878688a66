#include "utility/bar_client/bar_connection.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPointer>
#include <QRectF>
#include <chrono>
#include <climits>
#include <cmath>
#include <utility>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

using namespace std::chrono_literals;
namespace service = barservice;

namespace {

constexpr int itemsDeadline = 500;  // milliseconds
constexpr Duration pauseAfterSilence = 1s;
// No deadline of our own: a pending call fails when the bar leaves the bus. Giving up on a bar that
// is merely slow would leave it with items that nobody knows the id of.
constexpr int whileTheBarLives = INT_MAX;
constexpr int daemonDeadline = 5000;  // milliseconds

bool isTrue(const QDBusMessage& reply) {
  return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("b") &&
         reply.arguments().constFirst().toBool();
}

}  // namespace

BarConnection::BarConnection(MainLoop& loop, const QDBusConnection& bus)
    : loop_(loop), bus_(bus), launcher_(loop, bus) {
  // Without a sender in the match, so that Qt need not wait for the daemon to name the bar's owner;
  // the sender is compared on arrival.
  for (const char* signal : {"ItemClicked", "ApplicationAppeared", "AccessChanged"}) {
    bus_.connect({}, service::path, service::interface, QString::fromLatin1(signal), this,
                 SLOT(onBarSignal(QDBusMessage)));
  }

  auto* watcher =
      new QDBusServiceWatcher(service::name, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) { setOwner(owner); });

  auto question = QDBusMessage::createMethodCall(dbus::daemonName, dbus::daemonPath,
                                                 dbus::daemonName, QStringLiteral("GetNameOwner"));
  question << QString(service::name);
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, daemonDeadline), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
    call->deleteLater();
    if (ownerKnown_) return;  // the watcher has told since
    const QDBusMessage reply = call->reply();
    setOwner(reply.signature() == QLatin1String("s") && !call->isError()
                 ? reply.arguments().constFirst().toString()
                 : QString());
  });
}

void BarConnection::setOwner(const QString& owner) {
  if (std::exchange(ownerKnown_, true) && owner == owner_) return;
  owner_ = owner;
  blockedUntil_ = {};
  if (std::exchange(present_, false)) emit vanished();
  if (owner.isEmpty()) {
    launcher_.barMissing();
  } else {
    launcher_.barPresent();
    greet();
  }
}

void BarConnection::greet() {
  auto question = QDBusMessage::createMethodCall(owner_, service::path, dbus::properties,
                                                 QStringLiteral("Get"));
  question << QString(service::interface) << QStringLiteral("Version");
  ask(std::move(question), this, [this](const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::InvalidMessage) return;  // that bar is gone
    const bool told =
        reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("v");
    const QVariant version =
        told ? reply.arguments().constFirst().value<QDBusVariant>().variant() : QVariant();
    if (version.userType() != QMetaType::UInt || version.toUInt() != service::version) return;
    present_ = true;
    emit appeared();
  });
  askAccess(service::accessibility);
  askAccess(service::screenCapture);
}

bool BarConnection::hasAccess(const QString& capability) const {
  const auto known = access_.find(capability);
  return known != access_.end() && known->second;
}

void BarConnection::askAccess(const QString& capability) {
  ask(message(QStringLiteral("HasAccess"), {capability}), this,
      [this, capability](const QDBusMessage& reply) {
        // What the last bar said holds until this one has told.
        if (reply.type() == QDBusMessage::InvalidMessage) return;
        access_[capability] = isTrue(reply);
        emit accessChanged();
      });
}

void BarConnection::requestAccess(const QString& capability) {
  call(QStringLiteral("RequestAccess"), {capability}, this,
       [this, capability](const QDBusMessage& reply) {
         if (reply.type() != QDBusMessage::ReplyMessage) return;
         access_[capability] = isTrue(reply);
         emit accessChanged();
       });
}

std::optional<std::vector<BarItem>> BarConnection::items() {
  if (!hasAccess(service::accessibility)) return std::nullopt;
  const auto reply = waitFor(QStringLiteral("Items"), {});
  return reply ? parseBarItems(*reply) : std::nullopt;
}

std::optional<Rect> BarConnection::ownFrame(std::uint64_t id) {
  const auto reply = waitFor(QStringLiteral("OwnFrame"), {qulonglong{id}});
  if (!reply || reply->signature() != QLatin1String("(dddd)")) return std::nullopt;
  const auto frame = qdbus_cast<QRectF>(reply->arguments().constFirst());
  const bool finite = std::isfinite(frame.x()) && std::isfinite(frame.y()) &&
                      std::isfinite(frame.width()) && std::isfinite(frame.height());
  if (!finite) return std::nullopt;
  return Rect{frame.x(), frame.y(), frame.width(), frame.height()};
}

// Absent without a bar and while it is not to be waited for.
std::optional<QDBusMessage> BarConnection::waitFor(const QString& method,
                                                   const QVariantList& arguments) {
  if (!present_ || loop_.now() < blockedUntil_) return std::nullopt;
  const QDBusMessage reply = bus_.call(message(method, arguments), QDBus::Block, itemsDeadline);
  if (QDBusError(reply).type() == QDBusError::NoReply) {
    blockedUntil_ = loop_.now() + pauseAfterSilence;
  }
  return reply;
}

void BarConnection::send(const QString& method, const QVariantList& arguments) {
  if (present_) bus_.send(message(method, arguments));
}

void BarConnection::call(const QString& method, const QVariantList& arguments, QObject* context,
                         std::function<void(const QDBusMessage&)> answered) {
  if (present_) return ask(message(method, arguments), context, std::move(answered));
  QMetaObject::invokeMethod(
      this,
      [guard = QPointer(context), answered = std::move(answered)] {
        if (guard) answered(QDBusMessage());
      },
      Qt::QueuedConnection);
}

void BarConnection::ask(QDBusMessage message, QObject* context,
                        std::function<void(const QDBusMessage&)> answered) {
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, whileTheBarLives), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, owner = owner_, guard = QPointer(context),
           answered = std::move(answered)](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            if (guard) answered(owner == owner_ ? call->reply() : QDBusMessage());
          });
}

QDBusMessage BarConnection::message(const QString& method, const QVariantList& arguments) const {
  auto message = QDBusMessage::createMethodCall(owner_, service::path, service::interface, method);
  message.setArguments(arguments);
  return message;
}

void BarConnection::onBarSignal(const QDBusMessage& message) {
  if (owner_.isEmpty() || message.service() != owner_) return;
  const QString signal = message.member();
  const QString signature = message.signature();
  const QVariantList arguments = message.arguments();
  if (signal == QLatin1String("ItemClicked") && signature == QLatin1String("tuu(dd)")) {
    emit itemClicked(arguments[0].toULongLong(), arguments[1].toUInt(), arguments[2].toUInt(),
                     qdbus_cast<QPointF>(arguments[3]));
  } else if (signal == QLatin1String("ApplicationAppeared") && signature == QLatin1String("i")) {
    emit applicationAppeared(arguments[0].toInt());
  } else if (signal == QLatin1String("AccessChanged") && signature == QLatin1String("sb")) {
    // Meant for us, or for whoever it concerns: the answer is ours either way.
    const QString capability = arguments[0].toString();
    if (capability == service::accessibility || capability == service::screenCapture) {
      askAccess(capability);
    }
  }
}

}  // namespace tarnwick
