#include <linux/close_range.h>
#include <unistd.h>

#include <QApplication>
#include <QDBusConnection>
#include <cstdio>
#include <memory>
#include <string>

#include "common/bus/session.h"
#include "common/identity/own_program.h"
#include "common/look/appearance.h"
#include "common/look/icon_theme.h"
#include "common/look/translations.h"
#include "common/x11/server.h"
#include "core/app/app_delegate.h"
#include "utility/loop/quit_signals.h"
#include "utility/service/application_service.h"
#include "utility/services.h"

namespace tarnwick {

namespace {

constexpr int mostAttempts = 20;

struct End {
  int exitCode = 0;
  bool hasSuccessor = false;  // a new instance is to take this one's place
};

// The whole life of one instance.
End run(char** argv, const std::string& program) {
  constexpr const char* noBus = "tarnwick: no session bus\n";
  if (!hasSessionBus()) {
    std::fputs(noBus, stderr);
    return {1};
  }
  auto firstConnection = x11::connectToServer();
  if (!firstConnection) {  // the toolkit would abort
    std::fputs("tarnwick: no X server answers at $DISPLAY\n", stderr);
    return {1};
  }
  char platformOption[] = "-platform";
  char platform[] = "xcb";
  char* arguments[] = {argv[0], platformOption, platform, nullptr};
  int argumentCount = 3;
  QApplication toolkit(argumentCount, arguments);
  firstConnection.reset();

  const auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    std::fputs(noBus, stderr);
    return {1};
  }
  ApplicationService service(bus);
  // One that is just ending gives the name back in a moment.
  for (int attempt = 0; !service.claim(); ++attempt) {
    if (service.activateOther()) return {};
    if (attempt == mostAttempts) {
      std::fputs("tarnwick: another one runs and does not answer\n", stderr);
      return {1};
    }
    usleep(100'000);
  }

  const QuitSignals quitSignals;
  neverRestartWithSession();  // the login item starts it
  const SessionBusWatch busWatch(bus, "tarnwick");
  chooseIconTheme();
  useTranslations();
  Appearance appearance(bus);
  appearance.start();
  Services services(bus, program);
  const auto delegate = std::make_shared<AppDelegate>(services.desktop());
  service.serve(services.desktop(), delegate);
  delegate->applicationDidFinishLaunching();
  const int exitCode = QApplication::exec();
  return {exitCode, services.application().hasSuccessor()};
}

}  // namespace

}  // namespace tarnwick

int main(int, char** argv) {
  using namespace tarnwick;

  // What our starter left open is not for the programs that we start.
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);

  const std::string program = desktop::startedFrom(argv[0]);
  const End end = run(argv, program);
  if (!end.hasSuccessor) return end.exitCode;
  desktop::replaceProcess(program, argv);
  std::perror("tarnwick");
  return 1;
}
