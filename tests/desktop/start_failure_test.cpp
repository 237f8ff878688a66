#include <QFile>

#include "harness/desktop_test.h"

namespace tarnwick::test {
namespace {

TEST(StartFailure, MissingSessionIsOneLineAndExitCodeOne) {
  struct Case {
    const char* program;
    const char* variable;
    const char* value;  // null: not set
  };
  const Case cases[] = {
      {"tarnwick-bar", "DISPLAY", ""},
      {"tarnwick-bar", "DISPLAY", ":9999"},
      {"tarnwick-bar", "DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
      {"tarnwick-bar", "DBUS_SESSION_BUS_ADDRESS", nullptr},
      {"tarnwick-bar", "DBUS_SESSION_BUS_ADDRESS", ""},
      {"tarnwick-bar", "DBUS_SESSION_BUS_ADDRESS", "autolaunch:"},
      {"tarnwick", "DISPLAY", ""},
      {"tarnwick", "DISPLAY", ":9999"},
      {"tarnwick", "DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
      {"tarnwick", "DBUS_SESSION_BUS_ADDRESS", nullptr},
      {"tarnwick", "DBUS_SESSION_BUS_ADDRESS", ""},
      {"tarnwick", "DBUS_SESSION_BUS_ADDRESS", "autolaunch:"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(testing::Message() << each.program << " with " << each.variable << "="
                                    << (each.value ? each.value : "(unset)"));
    PrivateDesktop desktop;
    ASSERT_EQ(desktop.failure(), QString());
    // What the bus library starts a bus of its own with.
    QFile launcher(desktop.folder("home") + "/dbus-launch");
    ASSERT_TRUE(launcher.open(QIODevice::WriteOnly));
    launcher.write("#!/bin/sh\ntouch ~/launched\n");
    launcher.close();
    launcher.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    QFile notASocket(desktop.folder("runtime") + "/bus");
    ASSERT_TRUE(notASocket.open(QIODevice::WriteOnly));
    desktop.setVariable("PATH", desktop.folder("home") + ':' + qEnvironmentVariable("PATH"));
    desktop.unsetVariable(each.variable);
    if (each.value) desktop.setVariable(each.variable, each.value);
    Program& program = desktop.start(each.program);
    EXPECT_TRUE(program.waitForEnd());
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_EQ(program.errors().count('\n'), 1) << program.errors().constData();
    EXPECT_TRUE(program.errors().startsWith(QByteArray(each.program) + ": "))
        << program.errors().constData();
    EXPECT_TRUE(program.output().isEmpty());
    EXPECT_FALSE(QFile::exists(desktop.folder("home") + "/launched"));
  }
}

TEST(StartFailure, SecondUtilityLeavesTheFirstAlone) {
  PrivateDesktop desktop;
  ASSERT_EQ(desktop.failure(), QString());
  Program& first = desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return desktop.ownerOf("org.tarnwick.Tarnwick") == first.pid(); }));
  Program& second = desktop.start("tarnwick");
  EXPECT_TRUE(second.waitForEnd());
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_TRUE(first.running());
  EXPECT_EQ(desktop.ownerOf("org.tarnwick.Tarnwick"), first.pid());
}

}  // namespace
}  // namespace tarnwick::test
