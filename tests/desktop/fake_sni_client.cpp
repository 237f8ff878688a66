// A client of the status notifier protocol that can be told to misbehave. Prints one line per
// method called on it; `--help` lists what it can be made to do.
#include <QCoreApplication>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "harness/fake_sni_menu.h"
#include "harness/fake_sni_options.h"

namespace {

using fake::Options;
using fake::Pixmap;

constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr int lateMs = 350;  // after the layout is asked for without waiting longer
constexpr auto watcherService = "org.kde.StatusNotifierWatcher";

QList<Pixmap> pixmaps(const Options& options, uint colour) {
  const int side = options.iconSide;
  QByteArray bytes;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const bool frame = x == 0 || y == 0 || x == side - 1 || y == side - 1;
      const uint pixel = frame ? 0xff000000 | ~colour : colour;
      for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(pixel >> shift);
    }
  }
  if (options.wrongBytes) bytes.chop(side);
  return {{side, side, bytes}};
}

// One item and its menu, at any path.
class Item {
 public:
  Item(QDBusConnection bus, const Options& options, int number)
      : bus_(std::move(bus)), options_(options), number_(number), menu_(options.menuOptions) {
    path_ = "/StatusNotifierItem";
    if (number > 1) path_ += QString::number(number);
    menuPath_ = path_ + "/Menu";
    properties_ = options.properties;
    if (properties_.contains("Id") && number > 1) {
      properties_["Id"] = properties_["Id"].toString() + QString::number(number);
    }
    if (options.iconSide > 0) {
      properties_["IconPixmap"] = QVariant::fromValue(pixmaps(options, 0xffcc2222));
    }
    if (options.menu != "none") {
      properties_["Menu"] = QVariant::fromValue(QDBusObjectPath(menuPath_));
    }
  }

  const QString& path() const { return path_; }
  bool owns(const QString& path) const { return path == path_ || path == menuPath_; }

  void registerAt(const QString& argument) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, "/StatusNotifierWatcher", watcherService, "RegisterStatusNotifierItem");
    call.setArguments({argument});
    bus_.asyncCall(call);
  }

  void emitSignal(const QString& name, const QVariantList& arguments = {}) {
    QDBusMessage signal = QDBusMessage::createSignal(path_, itemInterface, name);
    signal.setArguments(arguments);
    bus_.send(signal);
  }

  void setColour(uint colour) {
    properties_["IconPixmap"] = QVariant::fromValue(pixmaps(options_, colour));
    emitSignal("NewIcon");
  }

  void setIconName(const QString& name) {
    properties_["IconName"] = name;
    emitSignal("NewIcon");
  }

  void setStatus(const QString& status) {
    properties_["Status"] = status;
    emitSignal("NewStatus", {status});
  }

  void announceMenu() { emitMenuSignal("LayoutUpdated", {1U, 0}); }
  void renumberMenu() {
    menu_.renumber();
    announceMenu();
  }
  void setLayoutAnswer(const QString& kind) { layoutAnswer_ = kind; }

  void setMenuLabel(int id, const QString& label) {
    emitMenuSignal("ItemsPropertiesUpdated",
                   {QVariant::fromValue(QList<fake::MenuUpdate>{menu_.setLabel(id, label)}),
                    QVariant::fromValue(QList<fake::MenuRemoval>())});
  }

  // False: the object knows no such member.
  bool handle(const QDBusMessage& message) {
    if (message.path() == menuPath_) return handleMenu(message);
    const QString member = message.member();
    const QString interface = message.interface();
    if (interface == "org.freedesktop.DBus.Properties" && (member == "GetAll" || member == "Get")) {
      return handleProperties(message);
    }
    if (interface != itemInterface) return false;
    const QVariantList arguments = message.arguments();
    QString line = member;
    for (const QVariant& argument : arguments) line += ' ' + argument.toString();
    say(line);
    answer(message, {}, 0);
    return true;
  }

 private:
  void say(const QString& line) const {
    const QString prefix = options_.items > 1 ? QString::number(number_) + ": " : QString();
    std::printf("%s\n", qPrintable(prefix + line));
    std::fflush(stdout);
  }

  void emitMenuSignal(const QString& name, const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(menuPath_, menuInterface, name);
    signal.setArguments(arguments);
    bus_.send(signal);
  }

  void answer(const QDBusMessage& message, const QVariantList& arguments, int delay) const {
    const QDBusMessage reply = message.createReply(arguments);
    if (delay <= 0) {
      bus_.send(reply);
    } else {
      QTimer::singleShot(delay, [bus = bus_, reply] { bus.send(reply); });
    }
  }

  bool handleProperties(const QDBusMessage& message) {
    if (options_.neverAnswer) return true;
    if (message.member() == "GetAll") {
      if (options_.noGetAll) return false;
      answer(message, {properties_}, options_.slowMs);
      return true;
    }
    const QString name = message.arguments().value(1).toString();
    if (properties_.contains(name)) {
      answer(message, {QVariant::fromValue(QDBusVariant(properties_[name]))}, options_.slowMs);
    } else {
      bus_.send(message.createErrorReply(QDBusError::UnknownProperty, name));
    }
    return true;
  }

  void aboutToShow(int id) {
    if (id != 0 || menu_.options().fillsAfterMs == 0) return menu_.setAboutToShow(id);
    QTimer::singleShot(menu_.options().fillsAfterMs, [this] {
      menu_.setAboutToShow(0);
      announceMenu();
    });
  }

  bool handleMenu(const QDBusMessage& message) {
    const fake::MenuOptions& options = menu_.options();
    const QString member = message.member();
    const QVariantList arguments = message.arguments();
    const int id = arguments.value(0).toInt();
    if (member == "Event") {
      say("Event " + QString::number(id) + ' ' + arguments.value(1).toString());
      answer(message, {}, 0);
      return true;
    }
    say(member + ' ' + QString::number(id));
    if (options.silent) return true;
    if (member == "AboutToShow") {
      if (options.aboutToShow == "missing") return false;
      if (options.aboutToShow == "late-error") {
        QTimer::singleShot(lateMs, [this, message, id] {
          aboutToShow(id);
          bus_.send(message.createErrorReply(QDBusError::Failed, "no model"));
        });
        return true;
      }
      aboutToShow(id);
      if (options.aboutToShow == "never") return true;
      if (options.aboutToShow == "error") {
        bus_.send(message.createErrorReply(QDBusError::Failed, "no model"));
      } else if (options.aboutToShow == "empty") {
        answer(message, {}, options.slowMs);
      } else {
        answer(message, {options.aboutToShow == "true"}, options.slowMs);
      }
      return true;
    }
    if (member != "GetLayout" || layoutAnswer_ == "error") return false;
    if (layoutAnswer_ == "never") return true;
    answer(message, {1U, QVariant::fromValue(menu_.layout(id))}, options.slowMs);
    return true;
  }

  QDBusConnection bus_;
  const Options& options_;
  const int number_;
  QString path_;
  QString menuPath_;
  QVariantMap properties_;
  fake::Menu menu_;
  QString layoutAnswer_;
};

// One connection with its items.
class Client : public QDBusVirtualObject {
 public:
  Client(QDBusConnection bus, const Options& options) : bus_(std::move(bus)), options_(options) {
    for (int i = 1; i <= options.items; ++i) {
      items_.push_back(std::make_unique<Item>(bus_, options, i));
    }
    bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
  }

  const std::vector<std::unique_ptr<Item>>& items() const { return items_; }

  void unexport() { bus_.unregisterObject("/", QDBusConnection::UnregisterTree); }

  void registerItems() {
    for (const auto& item : items_) {
      QString argument = bus_.baseService();
      const bool isFurther = item->path().back().isDigit();
      if (options_.registration == "both" || isFurther) argument += item->path();
      for (int i = 0; i <= options_.registerAgain; ++i) item->registerAt(argument);
    }
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == "Introspect") {
      connection.send(message.createReply(introspect(message.path())));
      return true;
    }
    for (const auto& item : items_) {
      if (!item->owns(message.path())) continue;
      if (!item->handle(message)) {
        connection.send(message.createErrorReply(QDBusError::UnknownMethod, message.member()));
      }
      return true;
    }
    return false;
  }

  // The whole document: QtDBus adds none of its own to a message handled above.
  QString introspect(const QString& path) const override {
    QString xml = "<node>";
    for (const auto& item : items_) {
      if (item->path() == path) xml += QString("<interface name='%1'/>").arg(itemInterface);
      if (item->path().startsWith(path + '/')) {
        xml += QString("<node name='%1'/>").arg(item->path().section('/', -1));
      }
    }
    return xml + "</node>";
  }

 private:
  QDBusConnection bus_;
  const Options& options_;
  std::vector<std::unique_ptr<Item>> items_;
};

class Program : public QObject {
  Q_OBJECT

 public:
  explicit Program(Options options) : options_(std::move(options)) {
    client_.registerItems();
    bus_.connect("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                 "NameOwnerChanged", {watcherService}, QString(), this,
                 SLOT(onWatcher(QString, QString, QString)));
    std::printf("ready %s\n", qPrintable(bus_.baseService()));
    std::fflush(stdout);
    if (options_.stormHz > 0) {
      storm_.callOnTimeout(this, &Program::storm);
      storm_.start(std::max(1, 1000 / options_.stormHz));
      stormClock_.start();
    }
    if (options_.unexportAfterMs > 0) {
      QTimer::singleShot(options_.unexportAfterMs, this, [this] { client_.unexport(); });
    }
    if (options_.quitAfterMs > 0) {
      QTimer::singleShot(options_.quitAfterMs, qApp, &QCoreApplication::quit);
    }
    connect(&input_, &QSocketNotifier::activated, this, &Program::readCommands);
  }

 private slots:
  void onWatcher(const QString&, const QString&, const QString& now) {
    if (!now.isEmpty()) client_.registerItems();
  }

 private:
  Item& first() { return *client_.items().front(); }

  // As many signals as the clock says are due.
  void storm() {
    const qint64 due = stormClock_.elapsed() * options_.stormHz / 1000;
    for (; stormSent_ < due; ++stormSent_) {
      if (options_.stormChanges) {
        first().setColour(0xff000000 | static_cast<uint>(stormSent_ * 40503));
      } else {
        first().emitSignal("NewIcon");
      }
    }
  }

  void readCommands() {
    do {
      std::string line;
      if (!std::getline(std::cin, line)) {
        input_.setEnabled(false);
        return;
      }
      obey(QString::fromStdString(line));
    } while (std::cin.rdbuf()->in_avail() > 0);
  }

  void obey(const QString& line) {
    const QString argument = line.section(' ', 1);
    if (line.startsWith("icon-name ")) first().setIconName(argument);
    if (line.startsWith("status ")) first().setStatus(argument);
    if (line == "menu-renumber") first().renumberMenu();
    if (line.startsWith("menu-layout ")) first().setLayoutAnswer(argument);
    if (line == "menu-storm") {
      menuStorm_.callOnTimeout(this, [this] { first().announceMenu(); });
      menuStorm_.start(20);
    }
    if (line.startsWith("menu-label ")) {
      first().setMenuLabel(argument.section(' ', 0, 0).toInt(), argument.section(' ', 1));
    }
  }

  Options options_;
  QDBusConnection bus_ = QDBusConnection::sessionBus();
  Client client_{bus_, options_};
  QTimer storm_;
  QTimer menuStorm_;
  QElapsedTimer stormClock_;
  qint64 stormSent_ = 0;
  QSocketNotifier input_{0, QSocketNotifier::Read};
};

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);  // so that in_avail() tells of further lines
  QCoreApplication application(argc, argv);
  qDBusRegisterMetaType<Pixmap>();
  qDBusRegisterMetaType<QList<Pixmap>>();
  qDBusRegisterMetaType<fake::ToolTip>();
  qDBusRegisterMetaType<fake::MenuNode>();
  qDBusRegisterMetaType<fake::MenuUpdate>();
  qDBusRegisterMetaType<QList<fake::MenuUpdate>>();
  qDBusRegisterMetaType<fake::MenuRemoval>();
  qDBusRegisterMetaType<QList<fake::MenuRemoval>>();
  const Program program(fake::parse(application));
  return QCoreApplication::exec();
}

#include "fake_sni_client.moc"
