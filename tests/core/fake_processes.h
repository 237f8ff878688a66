#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include "common/identity/identity.h"
#include "tests/core/temporary_folder.h"

namespace tarnwick::desktop {

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

}  // namespace tarnwick::desktop
