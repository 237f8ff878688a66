#include "common/files/json_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "tests/core/temporary_folder.h"

namespace tarnwick::desktop {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::readFile;
using test::writeFile;

bool put(const JsonFile& file, const std::string& key, const json& value) {
  return file.update([&](json& document) {
    document[key] = value;
    return true;
  });
}

mode_t modeOf(const fs::path& file) {
  struct stat info {};
  return lstat(file.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

// Root may read everything; the test then goes on as somebody else.
class Unprivileged {
 public:
  Unprivileged() { changed_ = geteuid() == 0 && seteuid(65534) == 0; }
  ~Unprivileged() {
    if (changed_ && seteuid(0) != 0) abort();
  }

 private:
  bool changed_;
};

class JsonFileTest : public testing::Test {
 protected:
  test::TemporaryFolder folder_;
  fs::path path_ = folder_.path() / "new" / "folders" / "settings.json";
  // Bad files count as settled at once.
  JsonFile file_{path_, JsonRoot::object, std::chrono::seconds(0)};
};

TEST_F(JsonFileTest, WritesPrivateFilesAndKeepsTheModeOfExistingOnes) {
  EXPECT_TRUE(file_.read().is_null());
  EXPECT_FALSE(fs::exists(path_.parent_path())) << "reading makes nothing";
  ASSERT_TRUE(put(file_, "a", 1));
  EXPECT_EQ(file_.read(), json({{"a", 1}}));
  EXPECT_EQ(modeOf(path_), 0600u);
  EXPECT_EQ(modeOf(path_.parent_path()), 0700u);
  fs::permissions(path_, fs::perms(0640));
  ASSERT_TRUE(put(file_, "b", 2));
  EXPECT_EQ(modeOf(path_), 0640u);
  EXPECT_FALSE(file_.update([](json& document) {
    document.clear();
    return false;
  }));
  EXPECT_EQ(file_.read(), json({{"a", 1}, {"b", 2}}));
}

TEST_F(JsonFileTest, KeepsDamagedFilesAside) {
  const std::string cases[] = {
      "",
      "{\"a\": ",
      "{\"a\": \"\xff\"}",
      "[1]",  // another root than asked for
      "{\"a\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}",
  };
  int count = 0;
  for (const std::string& damaged : cases) {
    ++count;
    writeFile(path_, damaged);
    if (count % 2) {
      EXPECT_TRUE(file_.read().is_null()) << count;
      EXPECT_FALSE(fs::exists(path_));
    }
    ASSERT_TRUE(put(file_, "b", count));
    EXPECT_EQ(file_.read(), json({{"b", count}})) << "nothing of the damaged one is left";
    const std::string suffix = count == 1 ? ".damaged" : ".damaged-" + std::to_string(count);
    EXPECT_TRUE(readFile(path_.native() + suffix) == damaged) << count;
  }

  fs::resize_file(path_, (16 << 20) + 1);
  EXPECT_TRUE(file_.read().is_null());
  EXPECT_FALSE(fs::exists(path_)) << "too large is damaged too";
}

TEST_F(JsonFileTest, LeavesAFileAloneWhileItIsWrittenInPlace) {
  const JsonFile patient(path_, JsonRoot::object, std::chrono::hours(1));
  for (const std::string part : {"", "{\"a\": "}) {
    writeFile(path_, part);
    EXPECT_TRUE(patient.read().is_null());
    EXPECT_EQ(patient.tryRead(), std::nullopt);
    EXPECT_FALSE(put(patient, "b", 2));
    EXPECT_EQ(readFile(path_), part);
  }
  writeFile(path_, "{\"a\": 1}");
  EXPECT_EQ(patient.read(), json({{"a", 1}}));
  EXPECT_TRUE(put(patient, "b", 2));
}

TEST_F(JsonFileTest, NeverReplacesWhatItCannotRead) {
  fs::create_directories(path_);
  EXPECT_TRUE(file_.read().is_null());
  EXPECT_FALSE(put(file_, "a", 1));
  EXPECT_TRUE(fs::is_directory(path_));
  fs::remove(path_);

  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_TRUE(file_.read().is_null());
  EXPECT_FALSE(put(file_, "a", 1));
  fs::remove(path_);

  fs::remove(path_.native() + ".lock");  // which the other user could not open
  writeFile(path_, "{\"a\": 1}");
  fs::permissions(path_, fs::perms::none);
  for (fs::path place = path_.parent_path(); place != folder_.path().parent_path();
       place = place.parent_path()) {
    fs::permissions(place, fs::perms::all);
  }
  {
    const Unprivileged other;
    EXPECT_TRUE(file_.read().is_null());
    EXPECT_FALSE(put(file_, "b", 2));
  }
  fs::permissions(path_, fs::perms(0644));
  EXPECT_EQ(file_.read(), json({{"a", 1}}));
}

TEST_F(JsonFileTest, LeavesAFolderItMayNotWriteToAlone) {
  writeFile(path_, "{\"a\": 1}");
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(path_, fs::perms(0644));
  fs::permissions(path_.parent_path(), fs::perms(0555));
  fs::permissions(path_.parent_path().parent_path(), fs::perms(0755));
  const Unprivileged other;
  EXPECT_EQ(file_.read(), json({{"a", 1}}));
  EXPECT_FALSE(put(file_, "b", 2));
  EXPECT_EQ(file_.read(), json({{"a", 1}}));
  EXPECT_FALSE(put(JsonFile("/proc/version/settings.json"), "b", 2));
}

TEST_F(JsonFileTest, WritesThroughSymbolicLinks) {
  const fs::path target = folder_.path() / "dotfiles" / "real.json";
  fs::create_directories(path_.parent_path());
  fs::create_directories(target.parent_path());
  fs::create_symlink("../../dotfiles/real.json", path_);
  ASSERT_TRUE(put(file_, "a", 1)) << "the target is not there yet";
  ASSERT_TRUE(put(file_, "b", 2));
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_FALSE(fs::is_symlink(target));
  EXPECT_EQ(JsonFile(target).read(), json({{"a", 1}, {"b", 2}}));
}

TEST_F(JsonFileTest, GivesUpWhenAnotherWriterKeepsTheLock) {
  ASSERT_TRUE(put(file_, "a", 1));
  writeFile(path_, "{damaged");
  bool reached = false;
  ASSERT_TRUE(file_.update([&](json&) {
    // The lock is held here, by this very process.
    writeFile(path_, "{again damaged");
    EXPECT_FALSE(put(file_, "b", 2));
    EXPECT_TRUE(file_.read().is_null());
    EXPECT_TRUE(fs::exists(path_)) << "not moved without the lock";
    reached = true;
    return true;
  }));
  EXPECT_TRUE(reached);
}

TEST_F(JsonFileTest, LosesNoKeyWhenProcessesWriteAtOnce) {
  constexpr int kWriters = 2;
  constexpr int kKeys = 25;
  for (int writer = 0; writer < kWriters; ++writer) {
    if (fork() != 0) continue;
    int failures = 0;
    for (int key = 0; key < kKeys; ++key) {
      failures += !put(file_, std::to_string(writer) + "." + std::to_string(key), key);
    }
    _exit(failures);
  }
  for (int writer = 0; writer < kWriters; ++writer) {
    int status = -1;
    wait(&status);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(file_.read().size(), static_cast<std::size_t>(kWriters * kKeys));
  EXPECT_TRUE(fs::exists(path_));
}

TEST(BaseDirectoriesTest, IgnoreRelativeAndEmptyValues) {
  const std::string home = getenv("HOME") ? getenv("HOME") : "";
  setenv("HOME", "/home/somebody", 1);
  const std::pair<const char*, const char*> cases[] = {
      {"/elsewhere", "/elsewhere"},
      {"relative/folder", "/home/somebody/.config"},
      {"", "/home/somebody/.config"},
  };
  for (const auto& [value, expected] : cases) {
    setenv("XDG_CONFIG_HOME", value, 1);
    EXPECT_EQ(configHome(), expected);
  }
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(configHome(), "/home/somebody/.config");
  setenv("HOME", home.c_str(), 1);
}

}  // namespace
}  // namespace tarnwick::desktop
