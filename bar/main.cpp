#include <sys/eventfd.h>
#include <unistd.h>

#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QSocketNotifier>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "bar/bar_app.h"
#include "common/bus/session.h"
#include "common/look/icon_theme.h"
#include "common/look/translations.h"
#include "common/x11/server.h"

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

}  // namespace

int main(int argc, char** argv) {
  if (!tarnwick::hasSessionBus()) return fail("no session bus");
  auto firstConnection = tarnwick::x11::connectToServer();
  if (!firstConnection) return fail("no X server");  // the toolkit would abort
  stopOnSignals();
  // Under another display server the bar still is an X11 client.
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  if (platform != "offscreen" && platform != "minimal") qputenv("QT_QPA_PLATFORM", "xcb");
  QCoreApplication::setApplicationName(QStringLiteral("tarnwick-bar"));
  QGuiApplication::setDesktopFileName(QStringLiteral("org.tarnwick.MenuBar"));
  QApplication application(argc, argv);
  firstConnection.reset();
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
