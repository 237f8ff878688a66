#include "utility/bar_client/bar_launcher.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <algorithm>
#include <chrono>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr Duration firstDelay = 1s;
constexpr Duration longestDelay = 30s;
constexpr Duration soundAfter = 60s;  // a bar that stood this long has not failed at its start
constexpr auto activationDeadline = 25s;

// Tells a program who started it; would tell the bar a lie.
constexpr const char* launchVariables[] = {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN",
                                           "GIO_LAUNCHED_DESKTOP_FILE",
                                           "GIO_LAUNCHED_DESKTOP_FILE_PID"};

}  // namespace

BarLauncher::BarLauncher(MainLoop& loop, const QDBusConnection& bus)
    : loop_(loop), bus_(bus), delay_(firstDelay) {}

void BarLauncher::barMissing() {
  if (!presentSince_) {
    attempt();
    return;
  }
  if (loop_.now() - *presentSince_ >= soundAfter) delay_ = firstDelay;
  attemptLater();
}

void BarLauncher::barPresent() {
  presentSince_ = loop_.now();
  timer_.reset();
}

void BarLauncher::attemptLater() {
  timer_ = loop_.callAfter(delay_, [this] { attempt(); });
  delay_ = std::min(delay_ * 2, longestDelay);
}

void BarLauncher::attempt() {
  if (!bus_.isConnected()) return;  // the session has ended
  attemptLater();                   // in case that nothing comes of this one
  if (isStarting()) return;
  auto message = QDBusMessage::createMethodCall(
      dbus::daemonName, dbus::daemonPath, dbus::daemonName, QStringLiteral("StartServiceByName"));
  message << QString(barservice::name) << 0U;
  auto* watcher = new QDBusPendingCallWatcher(
      bus_.asyncCall(message,
                     static_cast<int>(std::chrono::milliseconds(activationDeadline).count())),
      this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
    call->deleteLater();
    const QDBusPendingReply<uint> reply = *call;
    if (!reply.isError() || !timer_) return;  // one is there or on its way
    const bool unknown = reply.error().type() == QDBusError::ServiceUnknown;
    if (!startSibling() && unknown) timer_.reset();
  });
}

bool BarLauncher::startSibling() {
  const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/tarnwick-bar");
  if (!QFileInfo(program).isExecutable()) return false;
  auto environment = QProcessEnvironment::systemEnvironment();
  for (const char* variable : launchVariables) environment.remove(QString::fromLatin1(variable));
  QProcess process;
  process.setProgram(program);
  process.setWorkingDirectory(QDir::homePath());
  process.setProcessEnvironment(environment);
  // It outlives us, so it must not hold what we were given.
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  qint64 pid = 0;
  if (!process.startDetached(&pid)) return false;
  started_ =
      desktop::UniqueFd(static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0U)));
  return true;
}

bool BarLauncher::isStarting() const {
  if (!started_) return false;
  pollfd ended{started_.get(), POLLIN, 0};
  return poll(&ended, 1, 0) == 0;
}

}  // namespace tarnwick
