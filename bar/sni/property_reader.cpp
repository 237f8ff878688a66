#include "bar/sni/property_reader.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QPointer>
#include <QTimerEvent>
#include <algorithm>
#include <limits>
#include <utility>

#include "bar/sni/sni_properties.h"
#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

using namespace std::chrono_literals;

constexpr auto answerTimeout = 5s;
constexpr int retryDelayMs = 1'000;
constexpr int maximumRetries = 3;
constexpr int crowdedDelayMs = 100;  // the bus itself has too many calls open; doubled every time
constexpr int maximumCrowded = 8;
constexpr int takeShare = 20;  // between readings: this many times what one costs here
constexpr int longestSpacingMs = 5'000;
constexpr int spacingMs = 33;  // one reading per frame
constexpr int floodSignals = 10;
constexpr int muteMs = 100;
constexpr int checkMs = 10'000;

QString itemInterface() {
  return QStringLiteral("org.kde.StatusNotifierItem");
}

QString propertiesInterface() {
  return QStringLiteral("org.freedesktop.DBus.Properties");
}

}  // namespace

// Answers to single Gets.
struct PropertyReader::Collection {
  QVariantMap values;
  qsizetype outstanding = 0;
  bool silent = false;
};

PropertyReader::PropertyReader(ItemAddress address, QObject* parent)
    : QObject(parent), address_(std::move(address)), spacing_(spacingMs) {}

PropertyReader::~PropertyReader() {
  subscribe(false);
}

void PropertyReader::start() {
  subscribe(true);
  read();
}

void PropertyReader::refresh() {
  dirty_ = true;
  attempts_ = 0;
  if (reading_ || timer_.isActive() || muteTimer_.isActive()) return;
  const qint64 wait = sinceRead_.isValid() ? spacing_ - sinceRead_.elapsed() : 0;
  if (wait > 0) {
    timer_.start(static_cast<int>(wait), Qt::PreciseTimer, this);
  } else {
    read();
  }
}

void PropertyReader::checkLater() {
  checkTimer_.start(checkMs, Qt::VeryCoarseTimer, this);
}

void PropertyReader::timerEvent(QTimerEvent* event) {
  if (event->timerId() == timer_.timerId()) {
    timer_.stop();
    if (!muteTimer_.isActive()) read();  // else it is read when that ends
  } else if (event->timerId() == muteTimer_.timerId()) {
    muteTimer_.stop();
    subscribe(true);
    refresh();
  } else if (event->timerId() == checkTimer_.timerId()) {
    checkTimer_.stop();
    refresh();
  }
}

void PropertyReader::onSignal(const QDBusMessage& signal) {
  Q_UNUSED(signal)
  if (!subscribed_) return;
  if (++signals_ > floodSignals) {
    // The cheapest signal is the one that does not come: what changes meanwhile is read afterwards.
    subscribe(false);
    muteTimer_.start(muteMs, this);
    return;
  }
  refresh();
}

void PropertyReader::subscribe(bool on) {
  if (std::exchange(subscribed_, on) == on) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  const char* const slot = SLOT(onSignal(QDBusMessage));
  const QString changed = QStringLiteral("PropertiesChanged");
  if (on) {
    bus.connect(address_.service, address_.path, itemInterface(), QString(), this, slot);
    bus.connect(address_.service, address_.path, propertiesInterface(), changed, this, slot);
  } else {
    bus.disconnect(address_.service, address_.path, itemInterface(), QString(), this, slot);
    bus.disconnect(address_.service, address_.path, propertiesInterface(), changed, this, slot);
  }
}

void PropertyReader::read() {
  if (reading_) return;
  reading_ = true;
  dirty_ = false;
  signals_ = 0;
  sinceRead_.start();
  callBus(propertiesCall(QStringLiteral("GetAll"), {itemInterface()}), patience(), this,
          [this](const QDBusMessage& reply) { onAnswer(reply); });
}

void PropertyReader::onAnswer(const QDBusMessage& reply) {
  const QString error = reply.errorName();
  if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("a{sv}")) {
    const auto values = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
    values.isEmpty() ? retry(true) : succeed(values);  // no item has no properties at all
  } else if (error == QLatin1String("org.freedesktop.DBus.Error.UnknownMethod") ||
             error == QLatin1String("org.freedesktop.DBus.Error.UnknownInterface")) {
    readOneByOne();
  } else if (error == QLatin1String("org.freedesktop.DBus.Error.LimitsExceeded")) {
    reading_ = false;
    if (crowded_ < maximumCrowded) timer_.start(crowdedDelayMs << crowded_++, this);
  } else {
    retry(saysAbsent(reply));
  }
}

// An owner that has never answered may be slow to start: its last chance does not run out.
std::chrono::milliseconds PropertyReader::patience() const {
  constexpr std::chrono::milliseconds endless{std::numeric_limits<int>::max()};
  return everRead_ || attempts_ < maximumRetries ? answerTimeout : endless;
}

void PropertyReader::readOneByOne() {
  auto collection = std::make_shared<Collection>();
  const QStringList names = sniPropertyNames();
  collection->outstanding = names.size();
  for (const QString& name : names) {
    callBus(propertiesCall(QStringLiteral("Get"), {itemInterface(), name}), patience(), this,
            [this, name, collection](const QDBusMessage& reply) {
              if (reply.signature() == QLatin1String("v") &&
                  reply.type() == QDBusMessage::ReplyMessage) {
                const auto value = reply.arguments().constFirst().value<QDBusVariant>();
                collection->values.insert(name, value.variant());
              } else if (!saysAbsent(reply)) {
                collection->silent = true;
              }
              if (--collection->outstanding > 0) return;
              if (collection->values.isEmpty()) {
                retry(!collection->silent);
              } else {
                succeed(collection->values);
              }
            });
  }
}

void PropertyReader::succeed(const QVariantMap& values) {
  reading_ = false;
  attempts_ = 0;
  crowded_ = 0;
  everRead_ = true;
  QElapsedTimer spent;
  spent.start();
  const QPointer<PropertyReader> self(this);
  emit propertiesRead(values);
  if (!self) return;
  spacing_ = std::clamp<qint64>(takeShare * spent.elapsed(), spacingMs, longestSpacingMs);
  if (dirty_) refresh();
}

// A fresh item's object may come a moment after its registration; one that has been there is gone.
void PropertyReader::retry(bool absent) {
  reading_ = false;
  if (absent && everRead_) {
    emit vanished();
  } else if (attempts_++ < maximumRetries) {
    timer_.start(retryDelayMs, this);
  } else if (absent) {
    emit vanished();
  } else if (dirty_) {
    refresh();
  }
}

QDBusMessage PropertyReader::propertiesCall(const QString& method,
                                            const QVariantList& arguments) const {
  QDBusMessage call = QDBusMessage::createMethodCall(address_.service, address_.path,
                                                     propertiesInterface(), method);
  call.setArguments(arguments);
  return call;
}

}  // namespace tarnwick::bar
