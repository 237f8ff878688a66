#include "utility/session/defaults_file.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/core/temporary_folder.h"

namespace tarnwick::desktop {
namespace {

using nlohmann::json;
using test::readFile;
using test::writeFile;
using Strings = std::vector<std::string>;

class DefaultsFileTest : public testing::Test {
 protected:
  test::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / "tarnwick" / "defaults.json";
  DefaultsFile defaults_{path_};
};

TEST_F(DefaultsFileTest, StoresEachTypeInItsOwnForm) {
  const std::tuple<const char*, DefaultsValue, json> cases[] = {
      {"bool", true, true},
      {"integer", std::int64_t{-3}, -3},
      {"largest", INT64_MAX, INT64_MAX},
      {"string", "h\u00e4lt", "h\u00e4lt"},
      {"empty string", "", ""},
      {"strings", Strings{"b", "a"}, {"b", "a"}},
      {"no strings", Strings{}, json::array()},
      {"no bytes", DefaultsData{""}, {{"$data", ""}}},
      {"one byte", DefaultsData{std::string(1, '\0')}, {{"$data", "AA=="}}},
      {"two bytes", DefaultsData{"\xff\xfe"}, {{"$data", "//4="}}},
      {"three bytes", DefaultsData{"[1]"}, {{"$data", "WzFd"}}},
  };
  for (const auto& [key, value, stored] : cases) {
    defaults_.set(key, value);
    EXPECT_EQ(json::parse(readFile(path_))[key], stored) << key;
    EXPECT_EQ(DefaultsFile(path_).value(key), value) << key;
  }
  EXPECT_EQ(defaults_.keys().size(), std::size(cases));
  defaults_.remove("bool");
  EXPECT_EQ(defaults_.value("bool"), std::nullopt);
  EXPECT_FALSE(json::parse(readFile(path_)).contains("bool"));
}

TEST_F(DefaultsFileTest, ValuesOfOtherTypesReadAsAbsentAndStay) {
  const json foreign = {{"null", nullptr},
                        {"fraction", 1.5},
                        {"too large", UINT64_MAX},
                        {"mixed", {"a", 1}},
                        {"object", {{"a", "b"}}},
                        {"not base64", {{"$data", "A"}}},
                        {"not base64 either", {{"$data", "A=B="}}},
                        {"number as data", {{"$data", 1}}},
                        {"more than data", {{"$data", ""}, {"a", "b"}}}};
  writeFile(path_, foreign.dump());
  for (const auto& [key, stored] : foreign.items()) {
    EXPECT_EQ(defaults_.value(key), std::nullopt) << key;
  }
  EXPECT_EQ(defaults_.keys().size(), foreign.size());
  EXPECT_TRUE(defaults_.contains("null"));
  defaults_.set("mine", "x");
  json expected = foreign;
  expected["mine"] = "x";
  EXPECT_EQ(json::parse(readFile(path_)), expected);
  for (const std::int64_t value : {1, 2}) {
    defaults_.set("fraction", value);
    EXPECT_EQ(defaults_.value("fraction"), DefaultsValue(value));
  }
  expected["fraction"] = 2;
  expected["damaged.fraction"] = 1.5;
  EXPECT_EQ(json::parse(readFile(path_)), expected) << "what was there is kept";
  expected["fraction"] = nullptr;
  expected["damaged.object"] = 0.5;
  writeFile(path_, expected.dump());
  defaults_.set("fraction", true);
  defaults_.set("object", true);
  expected["fraction"] = true;
  expected["object"] = true;
  expected["damaged-2.object"] = foreign["object"];
  EXPECT_EQ(json::parse(readFile(path_)), expected) << "and never replaced";
}

TEST_F(DefaultsFileTest, FollowsEveryChangeByAnotherProcess) {
  DefaultsFile other(path_);
  // Same size each time and within one tick of the file system's clock.
  for (int i = 0; i < 50; ++i) {
    other.set("flag", i % 2 ? "a" : "b");
    EXPECT_EQ(defaults_.value("flag"), DefaultsValue(i % 2 ? "a" : "b")) << i;
    std::filesystem::rename(path_, path_.native() + ".away");
    EXPECT_EQ(defaults_.value("flag"), std::nullopt);
    std::filesystem::rename(path_.native() + ".away", path_);
    EXPECT_EQ(defaults_.value("flag"), DefaultsValue(i % 2 ? "a" : "b"));
  }
}

TEST_F(DefaultsFileTest, TellsOfChangesByWhateverHand) {
  const auto folder = path_.parent_path();
  const auto other = folder_.path() / "other.json";
  struct Case {
    const char* name;
    std::function<void()> change;
    int told;
  };
  const Case cases[] = {
      {"nothing there yet", [] {}, 0},
      {"set here, which makes the folder", [&] { defaults_.set("a", "1"); }, 1},
      {"set by another process", [&] { DefaultsFile(path_).set("a", "2"); }, 1},
      {"the same again", [&] { writeFile(path_, R"({"a": "2"})"); }, 0},
      {"written in place", [&] { writeFile(path_, R"({"a": "3"})"); }, 1},
      {"half written", [&] { writeFile(path_, R"({"a": )"); }, 0},
      {"replaced", [&] { writeFile(other, "{}"), std::filesystem::rename(other, path_); }, 1},
      {"a file beside it", [&] { writeFile(folder / "b.json", "{}"); }, 0},
      {"folder renamed", [&] { defaults_.set("a", "4"), rename(folder, folder_.path() / "x"); }, 1},
      {"folder back", [&] { rename(folder_.path() / "x", folder); }, 1},
      {"linked", [&] { rename(path_, other), create_symlink(other, path_); }, 0},
      {"the link's target written", [&] { writeFile(other, "{}"); }, 1},
      {"removed here", [&] { defaults_.set("b", true), defaults_.remove("b"); }, 0},
  };
  int told = 0;
  const auto observer = defaults_.onChanged([&] { ++told; });
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    told = 0;
    c.change();
    pollfd readable{defaults_.descriptor(), POLLIN, 0};
    while (poll(&readable, 1, 0) > 0) defaults_.checkForChange();
    EXPECT_EQ(told, c.told);
  }
}

TEST_F(DefaultsFileTest, AWriteThatChangesNothingWritesNothing) {
  EXPECT_TRUE(defaults_.remove("a"));
  EXPECT_FALSE(std::filesystem::exists(path_.parent_path()));
  EXPECT_TRUE(defaults_.set("a", Strings{"x"}));
  struct stat before {
  }, after{};
  ASSERT_EQ(stat(path_.c_str(), &before), 0);
  const std::string text = readFile(path_);
  EXPECT_TRUE(defaults_.set("a", Strings{"x"}));
  EXPECT_TRUE(defaults_.remove("b"));
  ASSERT_EQ(stat(path_.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_ctim.tv_nsec, after.st_ctim.tv_nsec);
  EXPECT_EQ(readFile(path_), text);
}

TEST_F(DefaultsFileTest, DamagedSettingsReadAsDefaultsAndAreKept) {
  defaults_.set("a", false);
  EXPECT_EQ(defaults_.value("a"), DefaultsValue(false));
  const std::string damaged = "{\"a\": 1,}";
  writeFile(path_, damaged);
  EXPECT_EQ(defaults_.value("a"), DefaultsValue(false)) << "may be half written";
  EXPECT_EQ(readFile(path_), damaged);
  EXPECT_FALSE(defaults_.set("a", true) || defaults_.remove("a"));
  // Nothing changes in the file from here on but its age.
  while (defaults_.value("a")) usleep(10'000);
  EXPECT_EQ(readFile(path_.native() + ".damaged"), damaged);
  defaults_.set("a", true);
  EXPECT_EQ(defaults_.value("a"), DefaultsValue(true));
}

TEST_F(DefaultsFileTest, AFailedReadIsNoSetting) {
  defaults_.set("a", true);
  rlimit files{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &files), 0);
  const rlimit none{0, files.rlim_max};
  DefaultsFile fresh(path_);
  usleep(50'000);  // so that the stamp alone would do
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto first = fresh.value("a");
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &files), 0);
  EXPECT_EQ(first, std::nullopt);
  EXPECT_EQ(fresh.value("a"), DefaultsValue(true)) << "read again";

  DefaultsFile(path_).set("b", true);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const auto kept = fresh.value("a");
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &files), 0);
  EXPECT_EQ(kept, DefaultsValue(true)) << "the last good document holds";
  EXPECT_EQ(fresh.value("b"), DefaultsValue(true));
}

}  // namespace
}  // namespace tarnwick::desktop
