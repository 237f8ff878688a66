#include <sys/wait.h>

#include <csignal>

#include "tests/core/fake_processes.h"

namespace tarnwick::desktop {
namespace {

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
  const auto openFiles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = openFiles();
  ASSERT_TRUE(own);
  EXPECT_EQ(resolver.identify(child)->bundleId, own->bundleId);
  EXPECT_EQ(resolver.executable(child), fs::read_symlink("/proc/self/exe"));
  kill(child, SIGKILL);
  siginfo_t info{};
  ASSERT_EQ(waitid(P_PID, child, &info, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(IdentityResolver().identify(child), std::nullopt) << "a zombie does not run";
  resolver.identify(std::vector{getpid()});
  EXPECT_EQ(openFiles(), before) << "nothing is kept of it";
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

}  // namespace
}  // namespace tarnwick::desktop
