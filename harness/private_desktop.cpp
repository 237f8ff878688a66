#include "harness/private_desktop.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>
#include <nlohmann/json.hpp>

#include "harness/wait.h"
#include "harness/x_screen.h"

namespace tarnwick::test {
namespace {

constexpr auto markerVariable = "TARNWICK_TEST_DESKTOP";

void writeFile(const QString& path, const QByteArray& contents) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path + ".new");
  if (file.open(QIODevice::WriteOnly)) {
    file.write(contents);
    file.close();
    // As the programs write them: whole, in one step.
    ::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData());
  }
}

QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The limits are those of an ordinary session bus, which are higher than the built-in ones.
constexpr auto busConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
  <limit name="max_completed_connections">100000</limit>
  <limit name="max_connections_per_user">100000</limit>
  <limit name="max_names_per_connection">50000</limit>
  <limit name="max_match_rules_per_connection">50000</limit>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
)";

}  // namespace

PrivateDesktop::PrivateDesktop(QSize screen)
    : root_(QDir::tempPath() + "/tarnwick-XXXXXX"),
      marker_(QUuid::createUuid().toString(QUuid::WithoutBraces)),
      environment_(QProcessEnvironment::systemEnvironment()),
      bus_(std::make_unique<QDBusConnection>(marker_)) {
  const QStringList inherited = environment_.keys();
  for (const QString& name : inherited) {
    if (name.startsWith("XDG_") || name.startsWith("DBUS_") || name.startsWith("QT_") ||
        name.startsWith("GTK_") || name.startsWith("GIO_") || name.startsWith("TARNWICK_") ||
        name == "LANGUAGE" || name == "DISPLAY" || name == "WAYLAND_DISPLAY" ||
        name == "SESSION_MANAGER" || name == "XAUTHORITY" || name == "DESKTOP_STARTUP_ID" ||
        name == "XMODIFIERS") {
      environment_.remove(name);
    }
  }
  for (const auto& name :
       {"home", "config", "data", "state", "cache", "runtime", "logs", "services"}) {
    QDir().mkpath(root_.filePath(name));
  }
  QFile::setPermissions(folder("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  setVariable("HOME", folder("home"));
  setVariable("XDG_CONFIG_HOME", folder("config"));
  setVariable("XDG_DATA_HOME", folder("data"));
  setVariable("XDG_STATE_HOME", folder("state"));
  setVariable("XDG_CACHE_HOME", folder("cache"));
  setVariable("XDG_RUNTIME_DIR", folder("runtime"));
  setVariable("LC_ALL", "C.UTF-8");
  setVariable("NO_AT_BRIDGE", "1");
  setVariable("GTK_USE_PORTAL", "0");
  setVariable(markerVariable, marker_);

  startBus();
  startServer(screen);
  if (failure_.isEmpty()) {
    startWindowManager();
  }
}

PrivateDesktop::~PrivateDesktop() {
  if (bus_) {
    QDBusConnection::disconnectFromBus(bus_->name());
  }
  // Told to go all at once; each is waited for when its object goes.
  for (auto program = programs_.rbegin(); program != programs_.rend(); ++program) {
    (*program)->signal(SIGKILL);
  }
  while (!programs_.empty()) {
    programs_.pop_back();
  }
  endStrays();
}

void PrivateDesktop::startServer(const QSize& screen) {
  int ready[2];
  if (pipe(ready) != 0) {
    failure_ = "no pipe";
    return;
  }
  fcntl(ready[0], F_SETFD, FD_CLOEXEC);
  fcntl(ready[0], F_SETFL, O_NONBLOCK);
  Program& server =
      run("Xvfb", {"-displayfd", QString::number(ready[1]), "-screen", "0",
                   QStringLiteral("%1x%2x24").arg(screen.width()).arg(screen.height()), "-dpi",
                   "96", "-nolisten", "tcp", "-noreset"});
  close(ready[1]);
  QByteArray number;
  const bool answered = waitFor([&] {
    char buffer[16];
    const auto count = read(ready[0], buffer, sizeof buffer);
    if (count > 0) {
      number.append(buffer, count);
    }
    return number.endsWith('\n') || !server.running();
  });
  close(ready[0]);
  if (!answered || !number.endsWith('\n')) {
    failure_ = "no X server: " + QString::fromUtf8(server.errors());
    return;
  }
  display_ = ":" + QString::fromLatin1(number.trimmed());
  setVariable("DISPLAY", display_);
}

void PrivateDesktop::startBus() {
  writeFile(root_.filePath("bus.conf"),
            QString::fromLatin1(busConfiguration).arg(root_.path()).toUtf8());
  Program& daemon = run("dbus-daemon", {"--nofork", "--nopidfile", "--config-file",
                                        root_.filePath("bus.conf"), "--print-address=1"});
  if (!waitFor([&] { return daemon.output().endsWith('\n') || !daemon.running(); }) ||
      !daemon.running()) {
    failure_ = "no session bus: " + QString::fromUtf8(daemon.errors());
    return;
  }
  setVariable("DBUS_SESSION_BUS_ADDRESS", QString::fromUtf8(daemon.output().trimmed()));
  bus_ = connect();
  if (!bus_->isConnected()) {
    failure_ = "no connection to the session bus: " + bus_->lastError().message();
  }
}

void PrivateDesktop::startWindowManager() {
  Program& manager = run("openbox", {"--sm-disable"});
  if (!waitFor([&] { return windowManagerRuns(display_) || !manager.running(); }) ||
      !manager.running()) {
    failure_ = "no window manager: " + QString::fromUtf8(manager.errors());
  }
}

Program& PrivateDesktop::start(const QString& name, const QStringList& arguments) {
  return run(pathOf(name), arguments);
}

Program& PrivateDesktop::run(const QString& file, const QStringList& arguments) {
  const QString log = root_.filePath("logs/%1-%2")
                          .arg(programs_.size(), 2, 10, QLatin1Char('0'))
                          .arg(QFileInfo(file).fileName());
  // Third-party clients take a pipe for something to read: parcellite waits for its end.
  const auto input =
      file.startsWith(TARNWICK_BINARIES) ? Program::Input::pipe : Program::Input::none;
  programs_.push_back(std::make_unique<Program>(file, arguments, environment_, log, input));
  return *programs_.back();
}

void PrivateDesktop::setVariable(const QString& name, const QString& value) {
  environment_.insert(name, value);
}

void PrivateDesktop::unsetVariable(const QString& name) {
  environment_.remove(name);
}

QString PrivateDesktop::busAddress() const {
  return environment_.value("DBUS_SESSION_BUS_ADDRESS");
}

std::unique_ptr<QDBusConnection> PrivateDesktop::connect() const {
  return std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(
      busAddress(), QStringLiteral("%1-%2").arg(marker_).arg(connections_++)));
}

qint64 PrivateDesktop::ownerOf(const QString& name) const {
  const QDBusReply<uint> pid = bus_->interface()->servicePid(name);
  return pid.isValid() ? pid.value() : 0;
}

QString PrivateDesktop::folder(const QString& name) const {
  return root_.filePath(name);
}

QString PrivateDesktop::pathOf(const QString& name) {
  const QString own = QStringLiteral(TARNWICK_BINARIES "/") + name;
  return QFileInfo::exists(own) ? own : QStandardPaths::findExecutable(name);
}

void PrivateDesktop::grant(const QString& executable,
                           const std::vector<std::string>& capabilities) {
  const QString path = folder("config") + "/tarnwick-bar/access.json";
  nlohmann::json access = readJson(path);
  if (!access.is_object()) {
    access = nlohmann::json::object();
  }
  access[QFileInfo(executable).canonicalFilePath().toStdString()] = capabilities;
  writeFile(path, QByteArray::fromStdString(access.dump()));
}

void PrivateDesktop::writeDefaults(const nlohmann::json& defaults) {
  writeFile(folder("config") + "/tarnwick/defaults.json",
            QByteArray::fromStdString(defaults.dump()));
}

nlohmann::json PrivateDesktop::readDefaults() const {
  const QString file = folder("config") + "/tarnwick/defaults.json";
  return QFile::exists(file) ? readJson(file) : nlohmann::json::object();
}

nlohmann::json PrivateDesktop::readJson(const QString& path) const {
  return nlohmann::json::parse(readFile(path).toStdString(), nullptr, false);
}

bool PrivateDesktop::activateAction(const QString& name, const QString& application) const {
  QDBusMessage message =
      QDBusMessage::createMethodCall("org.tarnwick.Tarnwick", "/org/tarnwick/Tarnwick",
                                     "org.freedesktop.Application", "ActivateAction");
  const QVariantList parameters =
      application.isEmpty() ? QVariantList() : QVariantList{application};
  message.setArguments({name, parameters, QVariantMap()});
  message.setAutoStartService(false);
  return bus_->call(message, QDBus::Block, 5000).type() == QDBusMessage::ReplyMessage;
}

QRect PrivateDesktop::windowFrame(const QString& title) {
  Program& search = start("xdotool", {"search", "--onlyvisible", "--name", '^' + title + '$'});
  search.waitForEnd();
  const std::uint32_t window = search.output().split('\n').first().toUInt();
  return window == 0 ? QRect() : placeOf(display_, window);
}

void PrivateDesktop::click(QPointF at, int button) {
  start("xdotool", {"mousemove", QString::number(qRound(at.x())), QString::number(qRound(at.y())),
                    "click", QString::number(button)})
      .waitForEnd();
}

QImage PrivateDesktop::screenshot() const {
  return grabScreen(display_);
}

QString PrivateDesktop::logs() const {
  QString text;
  for (const QFileInfo& log : QDir(folder("logs")).entryInfoList(QDir::Files, QDir::Name)) {
    const QByteArray contents = readFile(log.filePath()).right(8000);
    if (!contents.isEmpty()) {
      text += "--- " + log.fileName() + "\n" + QString::fromUtf8(contents);
    }
  }
  return text;
}

// Programs that detached themselves, such as a bar the utility started: known by the variable that
// every program of this desktop inherits.
void PrivateDesktop::endStrays() const {
  const QByteArray mark = QByteArray(markerVariable) + '=' + marker_.toLatin1();
  for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
    bool number = false;
    const int pid = entry.toInt(&number);
    if (number && readFile("/proc/" + entry + "/environ").split('\0').contains(mark)) {
      ::kill(pid, SIGKILL);
    }
  }
}

}  // namespace tarnwick::test
