#include "utility/loop/quit_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>

namespace tarnwick {

namespace {

constexpr std::array quitting = {SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> wakePipe = {-1, -1};

void onSignal(int) {
  const int savedErrno = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
  errno = savedErrno;
}

void handle(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : quitting) sigaction(signal, &action, nullptr);
}

}  // namespace

// Handlers and a pipe rather than blocked signals: programs we start would inherit the block.
QuitSignals::QuitSignals() {
  if (pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [] {
    char byte = 0;
    [[maybe_unused]] const auto drained = read(wakePipe[0], &byte, 1);
    QCoreApplication::quit();
  });
  handle(onSignal);
}

QuitSignals::~QuitSignals() {
  if (!notifier_) return;
  handle(SIG_DFL);
  notifier_.reset();
  for (int& end : wakePipe) close(std::exchange(end, -1));
}

}  // namespace tarnwick
