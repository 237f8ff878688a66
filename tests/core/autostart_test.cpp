#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "common/identity/desktop_file.h"
#include "common/identity/own_program.h"
#include "tests/core/temporary_folder.h"
#include "utility/session/autostart_entry.h"

namespace tarnwick::desktop {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;

constexpr const char* id = "org.tarnwick.Tarnwick";

class AutostartTest : public testing::Test {
 protected:
  void SetUp() override {
    setenv("XDG_CONFIG_HOME", (folder.path() / "user").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (folder.path() / "system").c_str(), 1);
    setenv("XDG_CURRENT_DESKTOP", "sway:wlroots", 1);
  }
  void TearDown() override {
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_CURRENT_DESKTOP"}) {
      unsetenv(name);
    }
  }

  test::TemporaryFolder folder;
  const fs::path userEntry = folder.path() / "user/autostart/org.tarnwick.Tarnwick.desktop";
  const fs::path systemEntry = folder.path() / "system/autostart/org.tarnwick.Tarnwick.desktop";
  const std::string head = "[Desktop Entry]\nType=Application\nExec=tarnwick\n";
};

TEST_F(AutostartTest, EntryCountsAsTheSessionWouldReadIt) {
  const AutostartEntry item(id, "/bin/sh");
  EXPECT_FALSE(item.isEnabled());
  const std::vector<std::pair<std::string, bool>> cases{
      {head, true},
      {head + "Hidden=true\n", false},
      {head + "X-GNOME-Autostart-enabled=false\n", false},
      {head + "X-GNOME-Autostart-enabled=true\n", true},
      {head + "OnlyShowIn=GNOME;KDE;\n", false},
      {head + "OnlyShowIn=GNOME;wlroots;\n", true},
      {head + "NotShowIn=sway\n", false},
      {head + "NotShowIn=GNOME;\n", true},
      {head + "TryExec=/no/such/program\n", false},
      {head + "TryExec=sh\n", true},
      {"[Desktop Entry]\nType=Application\n", false},
      {"nothing of the kind", false},
  };
  for (const auto& [text, enabled] : cases) {
    writeFile(userEntry, text);
    EXPECT_EQ(item.isEnabled(), enabled) << text;
    fs::remove(userEntry);
    writeFile(systemEntry, text);
    EXPECT_EQ(item.isEnabled(), enabled) << "for all users: " << text;
    fs::remove(systemEntry);
  }
}

TEST_F(AutostartTest, RegisteringWritesAndRemovesTheUsersEntry) {
  AutostartEntry item(id, "/bin/sh");
  EXPECT_TRUE(item.unregisterItem()) << "there is none";
  const fs::path linked = folder.path() / "linked";
  writeFile(linked, head + "Hidden=true\n");
  fs::create_directories(userEntry.parent_path());
  fs::create_symlink("../../linked", userEntry);
  EXPECT_TRUE(item.registerItem());
  EXPECT_TRUE(fs::is_symlink(userEntry)) << "written through";
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(std::distance(fs::directory_iterator(userEntry.parent_path()), {}), 1);
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_FALSE(item.isEnabled());
  EXPECT_FALSE(fs::exists(userEntry));
}

TEST_F(AutostartTest, EntryForAllUsersIsHiddenNotRemoved) {
  writeFile(systemEntry, head);
  AutostartEntry item(id, "/bin/sh");
  EXPECT_TRUE(item.isEnabled());
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_FALSE(item.isEnabled());
  EXPECT_EQ(readFile(systemEntry), head);
  EXPECT_TRUE(item.registerItem());
  EXPECT_TRUE(item.isEnabled());
}

TEST_F(AutostartTest, RefusedRegistrationChangesNothing) {
  writeFile(folder.path() / "user/autostart", "in the way");
  AutostartEntry item(id, "/bin/sh");
  EXPECT_FALSE(item.registerItem());
  EXPECT_FALSE(item.isEnabled());
  EXPECT_FALSE(AutostartEntry(id, "/no/such/program").registerItem());
}

TEST_F(AutostartTest, ProgramIsQuotedForTheDesktop) {
  const std::string program = folder.path() / R"(a "b" $c\ 100%)";
  fs::copy_file("/bin/true", program);
  ASSERT_TRUE(AutostartEntry(id, program).registerItem());
  const auto entry = parseDesktopFile(readFile(userEntry), "");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->tryExec, program);
  const std::string before = folder.path() / "a ";
  EXPECT_EQ(entry->exec, '"' + before + R"(\"b\" \$c\\ 100%%")");
}

TEST(OwnProgramTest, IsFoundByThePathItWasStartedFrom) {
  const test::TemporaryFolder folder;
  const fs::path self = fs::read_symlink("/proc/self/exe");
  fs::create_symlink(self, folder.path() / "link");
  const std::string path = getenv("PATH");
  setenv("PATH", ("/no/such:" + folder.path().string()).c_str(), 1);
  const std::vector<std::pair<std::string, std::string>> cases{
      {folder.path() / "link", folder.path() / "link"},
      {"link", folder.path() / "link"},
      {self, self},
      {"/bin/sh", self},
      {"-link", self},
      {"", self},
  };
  for (const auto& [argument, found] : cases) {
    EXPECT_EQ(startedFrom(argument.c_str()), found) << argument;
  }
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(findProgram("no-such-program"), "");
  EXPECT_EQ(startedFrom(nullptr), self);
}

}  // namespace
}  // namespace tarnwick::desktop
