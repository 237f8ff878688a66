#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QSocketNotifier>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "bar/bar_app.h"
#include "look/icon_theme.h"
#include "look/session.h"
#include "look/translations.h"

namespace {

int stopEvent = -1;

extern "C" void askToStop(int) {
  const std::uint64_t one = 1;
  // A full counter says the same.
  [[maybe_unused]] const auto count = write(stopEvent, &one, sizeof one);
}

void stopOnSignals() {
  stopEvent = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  struct sigaction action = {};
  action.sa_handler = askToStop;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaction(signal, &action, nullptr);
}

int fail(const char* why) {
  std::fprintf(stderr, "tarnwick-bar: %s\n", why);
  return EXIT_FAILURE;
}

// The toolkit aborts without an X server: looked for first.
bool hasXServer() {
  const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
      xcb_connect(nullptr, nullptr), xcb_disconnect);
  return xcb_connection_has_error(connection.get()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (!tarnwick::hasSessionBus()) return fail("no session bus");
  if (!hasXServer()) return fail("no X server");
  stopOnSignals();
  // Under another display server the bar still is an X11 client.
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  if (platform != "offscreen" && platform != "minimal") qputenv("QT_QPA_PLATFORM", "xcb");
  QCoreApplication::setApplicationName(QStringLiteral("tarnwick-bar"));
  QGuiApplication::setDesktopFileName(QStringLiteral("org.tarnwick.MenuBar"));
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return fail("no session bus");
  tarnwick::chooseIconTheme();
  tarnwick::useTranslations();

  // The utility starts the bar, or the bus does.
  tarnwick::neverRestartWithSession();
  const tarnwick::SessionBusWatch busWatch(bus, "tarnwick-bar");
  tarnwick::bar::BarApp bar(bus);
  QSocketNotifier stop(stopEvent, QSocketNotifier::Read);
  QObject::connect(&stop, &QSocketNotifier::activated, &bar, [&] {
    stop.setEnabled(false);
    QCoreApplication::exit();
  });
  bar.start();
  return QApplication::exec();
}
