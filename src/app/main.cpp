#include <linux/close_range.h>
#include <unistd.h>

#include <QApplication>
#include <QDBusConnection>
#include <cstdio>
#include <memory>

#include "adapters/qt/quit_signals.h"
#include "adapters/x11/windows.h"
#include "app/app_delegate.h"
#include "app/application_service.h"
#include "app/services.h"
#include "look/appearance.h"
#include "look/icon_theme.h"

int main(int, char** argv) {
  using namespace tarnwick;

  // What our starter left open is not for the programs that we start.
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);

  auto firstConnection = x11::connectToServer();
  if (!firstConnection) {  // the toolkit would abort
    std::fputs("tarnwick: no X server answers at $DISPLAY\n", stderr);
    return 1;
  }
  char platformOption[] = "-platform";
  char platform[] = "xcb";
  char* arguments[] = {argv[0], platformOption, platform, nullptr};
  int argumentCount = 3;
  QApplication toolkit(argumentCount, arguments);
  firstConnection.reset();

  const auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    std::fputs("tarnwick: there is no D-Bus session bus\n", stderr);
    return 1;
  }
  ApplicationService service(bus);
  if (!service.claim()) {
    service.activateOther();
    return 0;
  }

  const QuitSignals quitSignals;
  chooseIconTheme();
  Appearance appearance(bus);
  appearance.start();
  Services services(bus);
  const auto delegate = std::make_shared<AppDelegate>(services.desktop());
  service.serve(services.desktop(), delegate);
  delegate->applicationDidFinishLaunching();
  return QApplication::exec();
}
