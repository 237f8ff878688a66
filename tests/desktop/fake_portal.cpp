// The settings portal of a desktop that is dark or light: `fake_portal 1` is dark, 2 light, 0 says
// nothing of it. Takes another number per line of its input and signals the change.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(uint scheme) : scheme_(scheme) {
    bus_.registerVirtualObject(path, this);
    bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }

  void change(uint scheme) {
    scheme_ = scheme;
    auto signal = QDBusMessage::createSignal(path, interface, QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
           << QVariant::fromValue(QDBusVariant(scheme_));
    bus_.send(signal);
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() != QLatin1String("ReadOne")) return false;
    bus.send(message.createReply(QVariant::fromValue(QDBusVariant(scheme_))));
    return true;
  }
  QString introspect(const QString&) const override { return {}; }

 private:
  QDBusConnection bus_ = QDBusConnection::sessionBus();
  uint scheme_;
};

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  Portal portal(argc > 1 ? static_cast<uint>(std::atoi(argv[1])) : 0);
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &portal, [&] {
    std::string line;
    if (std::getline(std::cin, line)) {
      portal.change(static_cast<uint>(std::atoi(line.c_str())));
    } else {
      input.setEnabled(false);
    }
  });
  return QCoreApplication::exec();
}
