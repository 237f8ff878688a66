#include <QDBusMessage>
#include <QDBusMetaType>
#include <QFile>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

class SessionTest : public StatusDesktopTest {
 protected:
  bool settingsAreShown() { return !desktop.windowFrame("Tarnwick").isEmpty(); }

  bool call(const char* service, const char* path, const char* interface, const char* method,
            const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return desktop.bus().call(message, QDBus::Block, 20'000).type() == QDBusMessage::ReplyMessage;
  }
  // What a menu of applications sends; the bus starts the utility for it.
  bool ask(const char* method, const QVariantList& arguments = {QVariantMap()}) {
    return call("org.tarnwick.Tarnwick", "/org/tarnwick/Tarnwick", "org.freedesktop.Application",
                method, arguments);
  }
};

TEST_F(SessionTest, ManagerIsToldToStartNeitherProgramAndEndsBoth) {
  Program& manager = desktop.start("fake_session_manager");
  ASSERT_TRUE(waitFor([&] { return manager.output().endsWith('\n'); }));
  desktop.setVariable("SESSION_MANAGER", QString::fromUtf8(manager.output().trimmed()));
  Program& barProgram = startBar();
  Program& utility = startUtility();
  const QByteArray never = " 3\n";  // SmRestartNever
  for (const Program* program : {&barProgram, &utility}) {
    EXPECT_TRUE(waitFor([&] {
      return manager.output().contains(PrivateDesktop::pathOf(program->name()).toUtf8() + never);
    })) << manager.output().constData();
  }
  manager.write("end");
  for (Program* program : {&utility, &barProgram}) {
    EXPECT_TRUE(program->waitForEnd()) << program->name();
    EXPECT_EQ(program->exitCode(), 0) << program->name();
  }
}

TEST_F(SessionTest, LostBusEndsBothProgramsWithOneLine) {
  Program& bus = desktop.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
  ASSERT_TRUE(waitFor([&] { return bus.output().endsWith('\n'); }));
  desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", QString::fromUtf8(bus.output().trimmed()));
  desktop.grant("/proc/self/exe", {"accessibility"});
  Program& barProgram = desktop.start("tarnwick-bar");
  Program& utility = desktop.start("tarnwick");
  const auto connection = desktop.connect();
  BarProxy other(*connection);
  ASSERT_TRUE(waitFor([&] { return other.find("tarnwick.boundary").has_value(); }));
  bus.kill();
  for (Program* program : {&barProgram, &utility}) {
    EXPECT_TRUE(program->waitForEnd()) << program->name();
    EXPECT_EQ(program->exitCode(), 1) << program->name();
    EXPECT_EQ(program->errors(), program->name().toUtf8() + ": the session bus is gone\n");
  }
}

TEST_F(SessionTest, LaunchByTheBusOpensNoSettingsAndTheNextOneDoes) {
  QFile service(desktop.folder("services") + "/org.tarnwick.Tarnwick.service");
  ASSERT_TRUE(service.open(QIODevice::WriteOnly));
  service.write("[D-BUS Service]\nName=org.tarnwick.Tarnwick\nExec=" +
                PrivateDesktop::pathOf("tarnwick").toUtf8() + '\n');
  service.close();
  qDBusRegisterMetaType<QMap<QString, QString>>();
  const QMap<QString, QString> display{{"DISPLAY", desktop.display()}};
  ASSERT_TRUE(call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   "UpdateActivationEnvironment", {QVariant::fromValue(display)}));
  ASSERT_TRUE(call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   "ReloadConfig", {}));
  grantUtility();
  startBar();
  startClients({parcellite});
  ASSERT_TRUE(ask("Activate"));
  EXPECT_TRUE(waitFor([&] { return native("tarnwick.boundary").has_value(); })) << row();
  EXPECT_FALSE(settingsAreShown());
  ASSERT_TRUE(ask("Activate"));
  EXPECT_TRUE(waitFor([&] { return settingsAreShown(); }));
  ASSERT_TRUE(waitFor([&] {
    Program& active = desktop.start("xdotool", {"getactivewindow", "getwindowname"});
    active.waitForEnd();
    return active.output() == "Tarnwick\n";
  }));
  ASSERT_TRUE(desktop.start("xdotool", {"key", "ctrl+q"}).waitForEnd());
  ASSERT_TRUE(waitFor([&] { return desktop.ownerOf("org.tarnwick.Tarnwick") == 0; }));

  // Anything else that starts it is carried out, and what comes then is another launch.
  ASSERT_TRUE(ask("ActivateAction", {"hide", QVariantList{parcellite.bundleId}, QVariantMap()}));
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  ASSERT_TRUE(ask("Activate"));
  EXPECT_TRUE(waitFor([&] { return settingsAreShown(); }));
}

}  // namespace
}  // namespace tarnwick::test
