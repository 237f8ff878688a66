#include "common/menus/client/menu_client.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <utility>

#include "common/bus/bus_call.h"
#include "common/menus/client/layout_parser.h"

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

constexpr auto answerTimeout = 25s;
constexpr auto clickTimeout = 1s;
constexpr auto refreshSpacing = 100ms;  // some owners rebuild their menu many times a second
constexpr auto slice = 4ms;
constexpr int floodSignals = 10;    // of properties in one spacing; beyond it the whole is read
constexpr int maximumUpdates = 32;  // of one signal; beyond it the whole is read again

QString interfaceName() {
  return QStringLiteral("com.canonical.dbusmenu");
}

}  // namespace

// What an open() has seen so far: its calls end in any order.
struct MenuClient::Opening {
  Done done;
  bool asked = false;    // the layout has been asked for
  bool settled = false;  // `done` has been called
};

MenuClient::MenuClient(QString busName, QString path, QObject* parent)
    : QObject(parent), busName_(std::move(busName)), path_(std::move(path)) {
  refreshTimer_.setSingleShot(true);
  refreshTimer_.callOnTimeout(this, &MenuClient::runRefresh);
}

MenuClient::~MenuClient() {
  setSubscribed(false);
}

const MenuEntry* MenuClient::entry(int id) const {
  if (!root_) return nullptr;
  if (index_.isEmpty()) indexMenuEntries(*root_, index_);
  return index_.value(id);
}

void MenuClient::open(int id, QObject* context, Done done, std::chrono::milliseconds patience) {
  setSubscribed(true);
  auto opening = std::make_shared<Opening>();
  opening->done = [guard = QPointer<QObject>(context), done = std::move(done)](Failure failure) {
    if (guard && done) done(failure);
  };
  const auto settle = [opening](Failure failure) {
    if (!std::exchange(opening->settled, true)) opening->done(failure);
  };
  const auto ask = [this, id, opening, settle] {
    opening->asked = true;
    fetch(id, settle, answerTimeout);
  };

  callBus(call(QStringLiteral("AboutToShow"), {id}), answerTimeout, this,
          [this, id, opening, settle, ask](const QDBusMessage& reply) {
            const bool gone =
                reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown");
            if (gone) {
              settle(Failure::absent);
            } else if (!opening->asked) {
              ask();
            } else {
              refresh(id);  // filled late, after the layout had been read, whatever it answers
            }
          });
  sendBus(eventCall(id, QStringLiteral("opened"), 0));
  QTimer::singleShot(patience, this, [opening, ask] {
    if (!opening->asked && !opening->settled) ask();
  });
}

void MenuClient::refresh(int id) {
  wanted_ = missed_ || (wanted_ && *wanted_ != id) ? 0 : id;
  if (!reading_ && !refreshTimer_.isActive()) runRefresh();
}

void MenuClient::runRefresh() {
  if (reading_ || !wanted_) return;
  const int id = std::exchange(wanted_, std::nullopt).value();
  reading_ = true;
  const auto done = [this, id](Failure failure) {
    reading_ = false;
    missed_ = failure != Failure::none;
    if (failure == Failure::absent && id != 0) wanted_ = 0;  // renumbered meanwhile
    refreshTimer_.start(refreshSpacing);
  };
  fetch(root_ ? id : 0, done, answerTimeout);
}

void MenuClient::read(Done done, std::chrono::milliseconds patience) {
  fetch(0, std::move(done), patience);
}

void MenuClient::click(int id, std::vector<int> opened, quint32 time) {
  ++finishing_;
  callBus(eventCall(id, QStringLiteral("clicked"), time), clickTimeout, this,
          [this, opened = std::move(opened), time](const QDBusMessage&) {
            for (auto submenu = opened.rbegin(); submenu != opened.rend(); ++submenu) {
              close(*submenu, time);
            }
            if (--finishing_ == 0) emit finished();
          });
}

void MenuClient::close(int id, quint32 time) {
  if (id == 0) setSubscribed(false);
  sendBus(eventCall(id, QStringLiteral("closed"), time));
}

QDBusMessage MenuClient::call(const QString& method, const QVariantList& arguments) const {
  QDBusMessage message = QDBusMessage::createMethodCall(busName_, path_, interfaceName(), method);
  message.setArguments(arguments);
  return message;
}

QDBusMessage MenuClient::eventCall(int id, const QString& event, quint32 time) const {
  return call(QStringLiteral("Event"),
              {id, event, QVariant::fromValue(QDBusVariant(0)), QVariant::fromValue(time)});
}

void MenuClient::fetch(int id, Done done, std::chrono::milliseconds patience) {
  callBus(call(QStringLiteral("GetLayout"), {id, -1, QStringList()}), patience, this,
          [this, id, done = std::move(done)](const QDBusMessage& reply) {
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() < 2) {
              // An error other than silence names an id or object that is not there.
              const bool silent =
                  reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply");
              done(silent || reply.type() == QDBusMessage::ReplyMessage ? Failure::noAnswer
                                                                        : Failure::absent);
              return;
            }
            parse(id, std::make_shared<LayoutParser>(reply.arguments().at(1)), done);
          });
}

void MenuClient::parse(int id, std::shared_ptr<LayoutParser> parser, Done done) {
  if (!parser->run(QDeadlineTimer(slice))) {
    QTimer::singleShot(0ms, this, [this, id, parser = std::move(parser), done = std::move(done)] {
      parse(id, parser, done);
    });
    return;
  }
  std::optional<MenuEntry> layout = parser->take();
  if (!layout) {
    done(Failure::noAnswer);
  } else if (!merge(id, std::move(*layout))) {
    done(Failure::absent);
  } else {
    done(Failure::none);
  }
}

bool MenuClient::merge(int id, MenuEntry layout) {
  index_.clear();
  if (id == 0) {
    layout.id = 0;
    root_ = std::move(layout);
  } else {
    MenuEntry* const old = root_ ? findMenuEntry(*root_, id) : nullptr;
    if (old == nullptr) return false;
    // The limits hold for the whole menu however it came together: else the whole is read again.
    const MenuExtent whole = menuExtent(*root_);
    const MenuExtent before = menuExtent(*old);
    const MenuExtent now = menuExtent(layout);
    if (menuLevel(*root_, id) + now.depth > maximumMenuDepth ||
        whole.entries - before.entries + now.entries > maximumMenuEntries ||
        whole.iconBytes - before.iconBytes + now.iconBytes > maximumMenuIconTotal) {
      return false;
    }
    layout.id = id;
    layout.submenu = true;
    *old = std::move(layout);
  }
  keepIdsUnique(*root_);
  emit layoutChanged(id);
  return true;
}

void MenuClient::setSubscribed(bool on) {
  if (std::exchange(subscribed_, on) == on) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  const auto change = [&](const QString& signal, const char* slot) {
    if (on) {
      bus.connect(busName_, path_, interfaceName(), signal, this, slot);
    } else {
      bus.disconnect(busName_, path_, interfaceName(), signal, this, slot);
    }
  };
  change(QStringLiteral("LayoutUpdated"), SLOT(onLayoutUpdated(QDBusMessage)));
  change(QStringLiteral("ItemsPropertiesUpdated"), SLOT(onPropertiesUpdated(QDBusMessage)));
}

void MenuClient::onLayoutUpdated(const QDBusMessage& message) {
  const QVariant parent = message.arguments().value(1);
  refresh(parent.metaType().id() == QMetaType::Int ? parent.toInt() : 0);
}

void MenuClient::onPropertiesUpdated(const QDBusMessage& message) {
  if (!root_ || message.signature() != QLatin1String("a(ia{sv})a(ias)")) return;
  if (!signalsSince_.isValid() || signalsSince_.elapsed() > refreshSpacing.count()) {
    signalsSince_.start();
    signals_ = 0;
  }
  if (++signals_ > floodSignals) return refresh(0);
  int budget = maximumUpdates;
  qsizetype iconBytes = menuExtent(*root_).iconBytes;
  const auto entryFor = [&](int id) { return budget-- > 0 ? findMenuEntry(*root_, id) : nullptr; };

  const auto updated = message.arguments().at(0).value<QDBusArgument>();
  updated.beginArray();
  while (!updated.atEnd() && budget > 0) {
    int id = 0;
    updated.beginStructure();
    updated >> id;
    const std::optional<QVariantMap> properties = readMenuProperties(updated);
    updated.endStructure();
    MenuEntry* const entry = properties ? entryFor(id) : nullptr;
    if (entry == nullptr) continue;
    iconBytes -= entry->iconData.size();
    for (const auto& [name, value] : properties->asKeyValueRange()) {
      applyMenuProperty(*entry, name, value);
    }
    if (iconBytes + entry->iconData.size() > maximumMenuIconTotal) entry->iconData.clear();
    iconBytes += entry->iconData.size();
  }
  updated.endArray();
  const auto removed = message.arguments().at(1).value<QDBusArgument>();
  removed.beginArray();
  while (!removed.atEnd() && budget > 0) {
    int id = 0;
    QStringList names;
    removed.beginStructure();
    removed >> id >> names;
    removed.endStructure();
    if (MenuEntry* const entry = entryFor(id)) {
      for (const QString& name : names) applyMenuProperty(*entry, name, {});
    }
  }
  removed.endArray();
  if (budget <= 0) {
    refresh(0);
  } else {
    emit layoutChanged(0);
  }
}

}  // namespace tarnwick
