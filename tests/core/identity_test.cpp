#include "adapters/desktop/identity.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "adapters/desktop/command.h"
#include "adapters/desktop/session_processes.h"
#include "adapters/desktop/wrapper_script.h"
#include "tests/core/temporary_folder.h"

namespace tarnwick::desktop {
namespace {

namespace fs = std::filesystem;
using test::writeFile;
using Words = std::vector<std::string>;

struct FakeProcess {
  std::string executable;
  Words arguments;
  Words environment = {};
  std::string cgroup = "0::/user.slice/session-2.scope";
  int parent = 1;
  int session = 100;
  int terminal = 0;
  std::string flatpakInfo = {};
  std::string label = "unconfined";
  std::string folder = "/";
  std::string name = "comm";
  int startTime = 5000;
};

// A /proc and data folders of the test's own.
class IdentityTest : public testing::Test {
 protected:
  IdentityTest() {
    setenv("XDG_DATA_HOME", (root_ / "home").c_str(), 1);
    setenv("XDG_DATA_DIRS", (root_ / "local").string().append(":").append(root_ / "usr").c_str(),
           1);
    setenv("LC_ALL", "de_AT.UTF-8", 1);
  }
  ~IdentityTest() override {
    for (const char* name : {"XDG_DATA_HOME", "XDG_DATA_DIRS", "LC_ALL"}) unsetenv(name);
  }

  void install(const std::string& file, const std::string& keys, const std::string& where = "usr") {
    writeFile(root_ / where / "applications" / file,
              "[Desktop Entry]\nType=Application\n" + keys + "\n[Desktop Action x]\nExec=other\n");
  }

  void run(int pid, const FakeProcess& process) {
    const fs::path folder = root_ / "proc" / std::to_string(pid);
    fs::remove_all(folder);
    const auto zeroEnded = [](const Words& words) {
      std::string text;
      for (const std::string& word : words) text += word + '\0';
      return text;
    };
    std::string stat = std::to_string(pid) + " (" + process.name + ") S " +
                       std::to_string(process.parent) + " 1 " + std::to_string(process.session) +
                       " " + std::to_string(process.terminal);
    for (int field = 8; field < 22; ++field) stat += " 7";
    writeFile(folder / "stat", stat + " " + std::to_string(process.startTime) + " 1 2\n");
    writeFile(folder / "cmdline", zeroEnded(process.arguments));
    writeFile(folder / "environ", zeroEnded(process.environment));
    writeFile(folder / "cgroup", process.cgroup + "\n");
    writeFile(folder / "attr" / "current", process.label + "\n");
    if (!process.executable.empty()) fs::create_symlink(process.executable, folder / "exe");
    fs::create_symlink(process.folder, folder / "cwd");
    fs::create_directory(folder / "root");
    if (!process.flatpakInfo.empty()) writeFile(folder / "root/.flatpak-info", process.flatpakInfo);
  }

  std::string idOf(int pid) {
    const auto identity = resolver_.identify(pid);
    return identity ? identity->bundleId : "(absent)";
  }

  test::TemporaryFolder temporary_;
  fs::path root_ = temporary_.path();
  std::vector<WindowHints> windows_;
  int asked_ = 0;
  IdentityResolver resolver_{[this](std::int32_t) {
                               ++asked_;
                               return windows_;
                             },
                             root_ / "proc"};
};

TEST_F(IdentityTest, FindsTheApplicationOfAProcess) {
  install("org.gnome.Terminal.desktop", "Exec=gnome-terminal\nStartupWMClass=Gnome-terminal");
  install("copyq.desktop", "Exec=copyq --start-server show");
  install("my-app.desktop", "Exec=/opt/my/launch.sh");
  install("org.example.Memo.desktop", "Exec=env A=1 /usr/bin/notes %U");
  install("notes-note.desktop", "Exec=/usr/bin/notes --new-note");
  install("mail_mail.desktop", "Exec=env BAMF_DESKTOP_FILE_HINT=x /snap/bin/mail %u");
  install("org.sandbox.App.desktop",
          "Exec=/usr/bin/flatpak run --branch=stable --command=thing --file-forwarding "
          "org.sandbox.App @@u %U @@");
  install("radio.desktop", "Exec=sh -c \"sleep 2; A=b exec '/opt/The Radio/radio' --tray\"");
  install("gajim.desktop", "Exec=gajim");
  install("tool.desktop", "Exec=python3 -Wall /usr/share/tool/main.py");
  install("idea.desktop", "Exec=\"/opt/idea/bin/idea.sh\" %f");
  install("chat.desktop", "Exec=/usr/bin/electron22 /usr/lib/chat/app.asar --tray");
  install("image.desktop", "Exec=/home/u/Paint-1.2.AppImage");
  install("wine-foo.desktop", "Exec=wine C:\\\\\\\\Foo\\\\\\\\foo.exe");
  install("Upper.Case.desktop", "Exec=Weird");
  install("tried.desktop", "Exec=whatever\nTryExec=/usr/bin/tried-one");
  install("kde/part.desktop", "Exec=part");
  install("code-only.desktop", "Exec=python3 -c 'import this'");

  const std::string terminal = "0::/a/app-gnome-org.gnome.Terminal-77.scope";
  const std::string snap = "0::/a/snap.mail.mail-3c5e6a2f-1111-2222-3333-abcdefabcdef.scope";
  run(77, {"/usr/libexec/gnome-terminal-server", {"gnome-terminal-server"}, {}, terminal});
  const auto flatpak = [](const std::string& program, const std::string& name) {
    FakeProcess process{"/app/bin/" + program, {program}};
    process.flatpakInfo = "[Instance]\nname=no\n[Application]\nname=" + name + "\n";
    return process;
  };
  const auto launchedAs = [](const std::string& pid) {
    const std::string file = "GIO_LAUNCHED_DESKTOP_FILE";
    return FakeProcess{
        "/opt/x", {"x"}, {file + "=/usr/share/applications/my-app.desktop", file + "_PID=" + pid}};
  };
  const auto grouped = [](const std::string& cgroup) {
    return FakeProcess{"/opt/my/bin/real", {"real"}, {}, cgroup};
  };
  const auto python = [](const Words& arguments) {
    return FakeProcess{"/usr/bin/python3.11", arguments};
  };
  const std::tuple<const char*, const char*, FakeProcess> cases[] = {
      // Sandboxes.
      {"flatpak", "org.sandbox.App", flatpak("thing", "org.sandbox.App")},
      {"flatpak without a desktop file", "org.other.App", flatpak("notes", "org.other.App")},
      {"flatpak with a name that is no id", "thing", flatpak("thing", "../../x")},
      {"proxy of a flatpak",
       "org.sandbox.App",
       {"/usr/bin/xdg-dbus-proxy",
        {"xdg-dbus-proxy", "--args=3"},
        {},
        "0::/a/app-flatpak-org.sandbox.App-12.scope"}},
      {"a program of the same name outside", "thing", {"/usr/bin/thing", {"thing"}}},
      {"snap by label",
       "mail_mail",
       {"/snap/mail/3/bin/run", {"run"}, {}, "0::/x", 1, 1, 0, {}, "snap.mail.mail (enforce)"}},
      {"a snap's copy of a known program",
       "mail_mail",
       {"/snap/mail/3/bin/copyq", {"copyq"}, {}, snap}},
      {"snap by scope", "mail_mail", {"/usr/bin/python3.10", {"python3"}, {}, snap}},
      {"snap by folder", "mail_mail", {"/snap/mail/3/bin/mail", {"mail"}, {"SNAP_NAME=mail"}}},
      {"started by a snap, no snap itself",
       "copyq",
       {"/usr/bin/copyq", {"copyq"}, {"SNAP_NAME=mail"}, snap}},
      // Launch scopes.
      {"escaped dash", "my-app", grouped("0::/a/app-gnome-my\\x2dapp-5.scope")},
      {"unescaped dash", "my-app", grouped("0::/a/app-my-app-5.scope")},
      {"autostart service", "my-app", grouped("0::/a/app-my\\x2dapp@autostart.service")},
      {"bus service, inner group", "my-app", grouped("0::/a/dbus-:1.2-my\\x2dapp@0.service/inner")},
      {"older hierarchy", "my-app", grouped("4:memory:/b\n1:name=systemd:/a/app-my-app-5.scope")},
      {"terminal itself",
       "org.gnome.Terminal",
       {"/usr/bin/gnome-terminal", {"gnome-terminal"}, {}, terminal}},
      {"in a terminal", "copyq", {"/usr/bin/copyq", {"copyq"}, {}, terminal, 77, 9, 34816}},
      {"unknown, in a terminal", "tray", {"/home/u/tray", {"./tray"}, {}, terminal, 77, 9, 34816}},
      {"helper in the scope",
       "org.gnome.Terminal",
       {"/usr/libexec/helper", {"helper"}, {}, terminal, 77}},
      {"launched in the background of a terminal",
       "copyq",
       {"/usr/bin/copyq", {"copyq"}, {}, terminal, 1}},
      {"unknown, its shell gone", "tray", {"/home/u/tray", {"./tray"}, {}, terminal, 1, 9, 34816}},
      {"unknown, in a session of its own",
       "tray",
       {"/home/u/tray", {"./tray"}, {}, terminal, 77, 9}},
      // Launchers' variables.
      {"own launcher variable", "my-app", launchedAs("500")},
      {"inherited launcher variable", "x", launchedAs("499")},
      {"hint",
       "my-app",
       {"/opt/x", {"x"}, {"BAMF_DESKTOP_FILE_HINT=/var/a/applications/my-app.desktop"}}},
      {"inherited hint",
       "copyq",
       {"/usr/bin/copyq", {"copyq"}, {"BAMF_DESKTOP_FILE_HINT=my-app.desktop"}}},
      {"folder in the id",
       "kde-part",
       {"/opt/x", {"x"}, {"BAMF_DESKTOP_FILE_HINT=/usr/share/applications/kde/part.desktop"}}},
      // Programs.
      {"assignments before, plain entry of two", "org.example.Memo", {"/usr/bin/notes", {"notes"}}},
      {"replaced since", "org.example.Memo", {"/usr/bin/notes (deleted)", {"notes"}}},
      {"shell code, quotes, spaces", "radio", {"/opt/The Radio/radio", {"radio", "--tray"}}},
      {"by id, in any case", "Upper.Case", {"/opt/upper.case", {"x"}}},
      {"TryExec", "tried", {"/usr/lib/tried-one", {"x"}}},
      {"unreadable executable", "copyq", {"", {"/usr/bin/copyq"}}},
      {"renamed program", "copyq", {"/nix/store/.copyq-wrapped", {"copyq"}}},
      {"Python script", "gajim", python({"python3", "-u", "-X", "dev", "/usr/bin/gajim"})},
      {"Python module", "gajim", python({"python3", "-m", "gajim"})},
      {"Python under another title", "gajim", python({"gajim: main loop"})},
      {"Python code", "python3.11", python({"python3", "-c", "import x"})},
      {"common script name", "tool", python({"python3", "/usr/share/tool/main.py"})},
      {"script without an entry", "tray.py", python({"python3", "/home/u/tray.py"})},
      {"in somebody's home", "main.py", python({"python3", "/home/u/bin/main.py"})},
      {"relative common name",
       "widget",
       {.executable = "/usr/bin/node",
        .arguments = {"node", "-r", "x", "dist/index.js"},
        .folder = "/opt/widget"}},
      {"Java archive",
       "sync.jar",
       {"/usr/bin/java", {"java", "-Xmx1g", "-cp", "a:b", "-jar", "/opt/s/sync.jar"}}},
      {"Java class", "org.x.Main", {"/usr/bin/java", {"java", "-cp", "a:b", "org.x.Main", "arg"}}},
      {"Electron application",
       "chat",
       {"/usr/lib/electron22/electron22", {"electron22", "/usr/lib/chat/app.asar"}}},
      {"another Electron application",
       "mind",
       {"/usr/lib/electron22/electron22",
        {"electron22", "--no-sandbox", "/opt/mind/resources/app.asar"}}},
      {"bundled Electron", "planner", {"/opt/planner/electron", {"electron"}}},
      {"AppImage",
       "image",
       {"/tmp/.mount_PaintXyZ/usr/bin/paint", {"paint"}, {"APPIMAGE=/home/u/Paint-1.2.AppImage"}}},
      {"AppImage without an entry",
       "Draw",
       {"/tmp/.mount_DrawAbC/AppRun", {"AppRun"}, {"APPIMAGE=/home/u/Draw-2.0-x86_64.AppImage"}}},
      {"started by an AppImage", "x", {"/opt/x", {"x"}, {"APPIMAGE=/home/u/Paint-1.2.AppImage"}}},
      {"Wine", "wine-foo", {"/usr/lib/wine/wine64-preloader", {"C:\\Foo\\foo.exe", "/min"}}},
      {"nothing but a name", "a (b) c", {"", {}, {}, "0::/x", 1, 1, 0, {}, {}, "/", "a (b) c"}},
  };
  for (const auto& [what, expected, process] : cases) {
    run(500, process);
    EXPECT_EQ(IdentityResolver({}, root_ / "proc").identify(500)->bundleId, expected) << what;
  }
}

TEST_F(IdentityTest, HelpersBelongToTheApplicationThatStartedThem) {
  install("chrome.desktop", "Exec=/opt/google/chrome/google-chrome");
  install("idea.desktop", "Exec=\"/opt/idea/bin/idea.sh\" %f");
  install("openbox.desktop", "Exec=openbox");
  run(10, {"/opt/google/chrome/chrome", {"chrome"}, {}, "0::/x", 1});
  run(11, {"/usr/bin/bash", {"/bin/bash", "/opt/google/chrome/google-chrome"}});
  run(12, {"/opt/google/chrome/chrome", {"chrome"}, {}, "0::/x", 11});
  run(13, {"/opt/google/chrome/chrome", {"chrome", "--type=zygote"}, {}, "0::/x", 12});
  run(14, {"/opt/google/chrome/crash/handler", {"handler"}, {}, "0::/x", 13});
  run(20, {"/usr/bin/dash", {"/bin/sh", "/opt/idea/bin/idea.sh"}});
  run(21, {"/opt/idea/jbr/bin/java", {"java", "-cp", "x", "com.x.Main"}, {}, "0::/x", 20});
  run(30, {"/usr/bin/openbox", {"openbox"}});
  run(31, {"/usr/bin/tray", {"tray"}, {}, "0::/x", 30});
  run(32, {"/usr/bin/python3", {"python3", "/home/u/one.py"}, {}, "0::/x", 30});
  run(33, {"/usr/bin/python3", {"python3", "/home/u/two.py"}, {}, "0::/x", 32});
  run(40, {"/opt/own/main", {"main"}, {}, "0::/x", 41});
  run(41, {"/opt/own/main", {"main"}, {}, "0::/x", 40});
  const std::pair<int, const char*> cases[] = {
      {10, "chrome"}, {12, "chrome"}, {13, "chrome"}, {14, "chrome"}, {21, "idea"},
      {31, "tray"},   {32, "one.py"}, {33, "two.py"}, {40, "own"},
  };
  for (const auto& [pid, expected] : cases) EXPECT_EQ(idOf(pid), expected) << pid;
}

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
  EXPECT_EQ(processes.list({200, 201, 202}), expected) << "known by its item or window";
  fs::remove_all(root_ / "proc/101");
  expected.erase(expected.begin());
  EXPECT_EQ(processes.list({201}), expected) << "it ended";
  unsetenv("DISPLAY");
  unsetenv("XDG_RUNTIME_DIR");
}

TEST_F(IdentityTest, ForgetsProcessesThatAreGone) {
  for (const int pid : {0, -1, 7}) EXPECT_EQ(resolver_.identify(pid), std::nullopt) << pid;
  run(7, {"/usr/bin/one", {"one"}, {}, "0::/x", 1, 1, 0, {}, {}, "/", ") S 1 (", 5000});
  EXPECT_EQ(idOf(7), "one");
  run(7, {"/usr/bin/two", {"two"}, {}, "0::/x", 1, 1, 0, {}, {}, "/", "two", 6000});
  EXPECT_EQ(idOf(7), "two") << "the process id was given to another";
  run(7, {"/usr/bin/three", {"three"}, {}, "0::/x", 1, 1, 0, {}, {}, "/", "three", 6000});
  EXPECT_EQ(idOf(7), "three") << "the process executed another program";
  fs::remove_all(root_ / "proc/7");
  EXPECT_EQ(idOf(7), "(absent)");
}

TEST_F(IdentityTest, SeesRealProcessesEnd) {
  IdentityResolver resolver;
  const pid_t child = fork();
  if (child == 0) {
    for (;;) pause();
  }
  const auto own = resolver.identify(getpid());
  ASSERT_TRUE(own);
  EXPECT_EQ(resolver.identify(child)->bundleId, own->bundleId);
  EXPECT_EQ(resolver.executable(child), fs::read_symlink("/proc/self/exe"));
  kill(child, SIGKILL);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_EQ(resolver.identify(child), std::nullopt);
}

TEST_F(IdentityTest, TellsAnExecutableOnlyByAPathThatLeadsToIt) {
  const auto executable = [&](int pid) {
    return IdentityResolver({}, root_ / "proc").executable(pid);
  };
  for (const char* file : {"granted", "another", "proc/self/ns/mnt"}) writeFile(root_ / file, "");
  const std::string granted = root_ / "granted";
  run(1, {granted, {}});
  EXPECT_EQ(executable(1), granted);
  run(2, {root_ / "seen only from its own mounts", {}});
  EXPECT_EQ(executable(2), "");
  // Replaced by an update: believed if the process sees our mounts.
  run(3, {granted + " (deleted)", {}});
  EXPECT_EQ(executable(3), "");
  fs::create_directory(root_ / "proc/3/ns");
  fs::create_symlink(root_ / "another", root_ / "proc/3/ns/mnt");
  EXPECT_EQ(executable(3), "");
  fs::remove(root_ / "proc/3/ns/mnt");
  fs::create_symlink(root_ / "proc/self/ns/mnt", root_ / "proc/3/ns/mnt");
  EXPECT_EQ(executable(3), granted);
}

TEST(CommandTest, SplitsQuotesAndSeesThroughLaunchers) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"\"/opt/a b/\\$x\" '%f'", "/opt/a b/$x"},
      {"env -u A B=c nohup nice -n 5 firejail --private prog --x", "prog"},
      {"sh -c 'cd /opt/x && ./x.sh --go'", "./x.sh"},
      {"sh -c \"sh -c \\\"sh -c 'sh -c \\\\\\\"sh -c x\\\\\\\"'\\\"\"", "sh"},
      {"snap run --x thunder", "thunder"},
      {"flatpak update", "flatpak"},
      {"gtk-launch org.x.App", "org.x.App"},
      {"bash -o pipefail", "bash"},
      {"bash /dev/fd/3", "bash"},
      {"env", "env"},
      {"'unfinished", "unfinished"},
  };
  for (const auto& [line, expected] : cases)
    EXPECT_EQ(programOf(splitCommand(line)), expected) << line;
}

TEST(CommandTest, FindsWhatStartScriptsHandOverTo) {
  const std::pair<const char*, Words> cases[] = {
      {"exec /opt/a/a \"$@\"\n", {}},  // no script
      {"#!/usr/bin/python3\nexec /opt/a \"$@\"\n", {}},
      {"#!/bin/sh\n# don't\ncd /opt/a && exec ./a --x\n", {"./a"}},
      {"#! /usr/bin/env bash\nR=\"/usr/bin/r\"\nif [[ ! -f \"$R\" ]] ; then\n  "
       "R=\"${HERE}/r2\"\nfi\n"
       "case \"$@\" in\n  *x:*)\n    \"$R\" \"${@#x:}\"\n    ;;\nesac\n",
       {"/usr/bin/r", "r2"}},
      {"#!/bin/bash\nHERE=\"$(dirname \"$(readlink -f \"$0\")\")\"\nexport A=1\n"
       "exec -a \"$0\" \"$HERE/chrome\" \\\n  \"$@\"\n",
       {"chrome"}},
      {"#!/bin/sh\nexec env A=b python3 -m gajim \"$@\"\n", {"gajim"}},
      {"#!/bin/sh\nexec >/dev/null\nexec \"$UNKNOWN\" \"$@\"\nexec python3 \"$@\"\nls\n", {}},
  };
  for (const auto& [script, programs] : cases)
    EXPECT_EQ(wrappedPrograms(script), programs) << script;
  std::string endless = "#!/bin/sh\nA=aaaaaaaaaa\n";
  for (int i = 0; i < 60; ++i) endless += "A=$A$A\n";
  endless += "exec $A" + std::string(60'000, '$') + "\n";
  EXPECT_EQ(wrappedPrograms(endless), Words{});
}

}  // namespace
}  // namespace tarnwick::desktop
