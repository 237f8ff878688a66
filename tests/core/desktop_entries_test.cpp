#include "common/identity/session_processes.h"
#include "tests/core/fake_processes.h"

namespace tarnwick::desktop {
namespace {

TEST_F(IdentityTest, WindowsGiveTheNameButNeverTheId) {
  install("org.gnome.Maps.desktop", "Name=Maps\nIcon=maps\nExec=gjs-maps");
  install("office-writer.desktop",
          "Name=Writer\nIcon=pen\nExec=office --writer\nStartupWMClass=OfficeWriter");
  install("other.desktop", "Name=Other\nExec=other\nStartupWMClass=officewriter");
  const std::tuple<WindowHints, const char*, const char*> cases[] = {
      {{"org.gnome.Maps", "", ""}, "Maps", "maps"},
      {{"/usr/share/applications/office-writer.desktop", "", ""}, "Writer", "pen"},
      {{"", "OfficeWriter", "x"}, "Writer", "pen"},
      {{"", "OFFICEWRITER", "x"}, "Writer", "pen"},
      {{"", "x", "officewriter"}, "Other", ""},
      {{"", "Other", ""}, "Other", ""},
      {{"", "maps", ""}, "Maps", "maps"},
      {{"", "x", "y"}, "", ""},
      {{}, "", ""},  // before its window is mapped
  };
  run(1, {"/opt/office/soffice.bin", {"soffice.bin"}});
  run(2, {"/opt/office/soffice.bin", {"soffice.bin"}, {}, "0::/x", 1});  // its fork
  for (const auto& [hints, name, icon] : cases) {
    windows_ = {{}, hints};
    for (const int pid : {1, 2}) {
      const auto identity =
          IdentityResolver([this](std::int32_t) { return windows_; }, root_ / "proc").identify(pid);
      EXPECT_EQ(identity->bundleId, "soffice.bin") << name;
      EXPECT_EQ(identity->name, name);
      EXPECT_EQ(identity->icon, icon);
    }
  }
  run(50, {"/usr/bin/other", {"other"}});
  windows_ = {{"org.gnome.Maps", "", ""}};
  EXPECT_EQ(resolver_.identify(50)->name, "Other");
  EXPECT_EQ(asked_, 0) << "the process itself gave the answer";
}

TEST_F(IdentityTest, DesktopFilesFollowPrecedenceLanguageAndChanges) {
  install("a.desktop",
          "Name=Plain\nName[de]=Deutsch\nName[de_AT]=\\sWien\nName[de@x]=X\nExec=a\nIcon=a-icon");
  install("b.desktop", "Name=System\nExec=b");
  install("b.desktop", "Name=Local\nName[fr]=Fr\nExec=b", "local");
  install("c.desktop", "Name=C\nExec=c");
  install("c.desktop", "Name=Hidden\nExec=c\nHidden=true", "home");
  install("d.desktop", "Name=Caf\xe9\nExec=d");
  writeFile(root_ / "usr/applications/link.desktop", "[Desktop Entry]\nType=Link\nExec=e\n");
  const std::tuple<int, const char*, const char*, const char*> cases[] = {
      {1, "a", " Wien", "a-icon"}, {2, "b", "Local", ""}, {3, "c", "", ""},
      {4, "d", "Caf\uFFFD", ""},   {5, "e", "", ""},
  };
  for (const auto& [pid, id, name, icon] : cases) {
    run(pid, {std::string("/usr/bin/") + id, {id}});
    const auto identity = resolver_.identify(pid);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->bundleId, id);
    EXPECT_EQ(identity->name, name);
    EXPECT_EQ(identity->icon, icon);
  }
  install("org.new.E.desktop", "Name=New\nExec=e", "home");
  EXPECT_EQ(idOf(5), "org.new.E") << "installed while it runs";
  for (const char* folder : {"home", "local", "usr"}) {
    fs::last_write_time(root_ / folder / "applications",
                        fs::file_time_type::clock::now() + std::chrono::hours(1));
  }
  const auto revision = resolver_.revision();
  EXPECT_EQ(resolver_.revision(), revision) << "a time in the future is not read again and again";
  fs::remove(root_ / "usr/applications/a.desktop");
  install("a2.desktop", "Exec=a");
  EXPECT_EQ(idOf(1), "a") << "what was hidden under a sure id stays so";
}

TEST_F(IdentityTest, TheEntryInTheMenuSpeaksForTheApplication) {
  const std::string path = std::getenv("PATH");
  setenv("PATH", (root_ / "bin").c_str(), 1);
  setenv("XDG_CURRENT_DESKTOP", "Here", 1);
  const auto script = [&](const char* name, const char* text) {
    writeFile(root_ / "bin" / name, text);
    fs::permissions(root_ / "bin" / name, fs::perms::owner_all);
  };
  script("open-rem", "#!/bin/sh\nexec rem-launcher \"$@\"\n");
  script("rem", "");
  script("start-edit", "#!/bin/bash\nreal=/opt/edit/edit\n\"$real\" \"$@\"\n");
  install("org.rem.Rem-file.desktop", "Exec=open-rem -c %U\nTryExec=rem\nNoDisplay=true");
  install("org.rem.Rem.desktop", "Exec=open-rem %U\n[Desktop Action n]\nExec=/usr/bin/rem --new");
  install("edit-handler.desktop", "Exec=/opt/edit/edit %u\nNoDisplay=true");
  install("the-editor.desktop", "Exec=start-edit %F");
  install("handler-only.desktop", "Exec=/opt/h/h\nNoDisplay=true");
  install("mine.desktop", "Exec=/opt/m/m\nNoDisplay=true");
  install("alike.desktop", "Exec=/opt/other/m.sh");
  install("foreign.desktop", "Exec=/opt/other/m");
  install("elsewhere.desktop", "Exec=/opt/t/t\nOnlyShowIn=There;");
  install("gone.desktop", "Exec=/opt/t/t\nTryExec=not-installed");
  install("tool.desktop", "Exec=/opt/t/t --tray\nNotShowIn=There;");
  install("bus-handler.desktop", "Exec=/opt/b/b\nNoDisplay=true");
  install("org.bus.App.desktop", "Exec=gapplication launch org.bus.App");
  const std::string scope = "0::/a/app-x-org.rem.Rem\\x2dfile-5.scope";
  const std::tuple<const char*, const char*, FakeProcess> cases[] = {
      {"real program in the actions", "org.rem.Rem", {"/usr/bin/rem", {"rem"}}},
      {"launched as a file's handler", "org.rem.Rem", {"/usr/bin/rem", {"rem"}, {}, scope}},
      {"real program in the start script", "the-editor", {"/opt/edit/edit", {"edit"}}},
      {"no other entry", "handler-only", {"/opt/h/h", {"h"}}},
      {"another program is only named alike", "mine", {"/opt/m/m", {"m"}}},
      {"of this desktop's menus, installed", "tool", {"/opt/t/t", {"t"}}},
      {"owner of the entry's bus name", "org.bus.App", {"/opt/b/b", {"b"}}},
      {"unknown owner of a bus name", "org.bus.App", {"/opt/b/worker", {"worker"}}},
  };
  for (const auto& [what, expected, process] : cases) {
    run(500, process);
    const bool onBus = process.executable.starts_with("/opt/b/");
    const IdentityResolver::BusNamesOf names = [onBus](std::int32_t) {
      return onBus ? Words{"org.unknown.Name", "org.bus.App"} : Words{};
    };
    EXPECT_EQ(IdentityResolver({}, root_ / "proc", names).identify(500)->bundleId, expected)
        << what;
  }
  setenv("PATH", path.c_str(), 1);
  unsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(IdentityTest, WindowsAndBusNamesThatComeLaterLeadFurther) {
  install("org.bus.App.desktop", "Name=On the bus\nExec=x");
  install("win.desktop", "Name=Window\nIcon=w\nExec=y\nStartupWMClass=Win");
  Words names;
  IdentityResolver resolver([this](std::int32_t) { return windows_; }, root_ / "proc",
                            [&](std::int32_t) { return names; });
  run(1, {"/opt/worker.py", {"worker.py"}});
  const auto now = [&] {
    const auto identity = resolver.identify(1);
    return identity->bundleId + "/" + identity->name + "/" + identity->icon;
  };
  EXPECT_EQ(now(), "worker.py//");
  EXPECT_EQ(resolver.identify(1)->otherIcons, (Words{"worker.py", "worker"}));
  windows_ = {{"", "Win", "instance"}};
  const auto before = resolver.revision();
  resolver.sourcesChanged();
  EXPECT_NE(resolver.revision(), before);
  EXPECT_EQ(now(), "worker.py/Window/w");
  EXPECT_EQ(resolver.identify(1)->otherIcons, (Words{"Win", "instance", "worker.py", "worker"}));
  names = {"org.bus.App"};
  resolver.sourcesChanged();
  EXPECT_EQ(now(), "org.bus.App/On the bus/");
}

TEST_F(IdentityTest, ListsTheProcessesOfThisDesktop) {
  for (const char* name : {"DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"})
    unsetenv(name);
  setenv("DISPLAY", ":7", 1);
  setenv("XDG_RUNTIME_DIR", "/run/u", 1);
  const std::tuple<const char*, Words, bool> cases[] = {
      {"its display", {"DISPLAY=:7.0"}, true},
      {"another display", {"DISPLAY=:8"}, false},
      {"another display, its bus", {"DISPLAY=:8", "XDG_RUNTIME_DIR=/run/u"}, true},
      {"its bus by address", {"DBUS_SESSION_BUS_ADDRESS=unix:path=/run/u/bus,guid=1"}, true},
      {"another bus", {"DBUS_SESSION_BUS_ADDRESS=unix:path=/b", "XDG_RUNTIME_DIR=/run/u"}, false},
      {"on no desktop", {"HOME=/"}, false},
      {"unreadable", {}, true},
  };
  SessionProcesses processes(root_ / "proc");
  EXPECT_EQ(processes.list({}), std::vector<std::int32_t>{});
  int pid = 100;
  std::vector<std::int32_t> expected;
  for (const auto& [what, environment, listed] : cases) {
    SCOPED_TRACE(what);
    run(++pid, {"/usr/bin/x", {"x"}, environment});
    if (listed) expected.push_back(pid);
    EXPECT_EQ(processes.list({}), expected);
  }
  run(200, {"", {}});  // one of the kernel's
  run(201, {"/usr/bin/x", {"x"}, {"HOME=/"}});
  expected.push_back(201);
  EXPECT_EQ(processes.list({200, 201, 202}), expected) << "known by its item";
  EXPECT_EQ(processes.list({}, {200, 201}), expected) << "known by its window";
  if (chown((root_ / "proc/201").c_str(), 65534, 65534) == 0) {  // nobody's
    EXPECT_EQ(processes.list({201}, {}), expected);
    const std::vector<std::int32_t> others(expected.begin(), expected.end() - 1);
    EXPECT_EQ(processes.list({}, {201}), others);
  }
  fs::remove_all(root_ / "proc/101");
  expected.erase(expected.begin());
  EXPECT_EQ(processes.list({201}), expected) << "it ended";
  unsetenv("DISPLAY");
  unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace tarnwick::desktop
