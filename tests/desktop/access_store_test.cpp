#include "bar/access/access_store.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace tarnwick::bar {
namespace {

using std::chrono::seconds;

TEST(AccessStoreTest, AGrantsTimeIsToldWhileTheBarHasSeenAllThatBecameOfIt) {
  const std::string granted = R"({"/bin/true": ["accessibility"]})";
  const std::string more = R"({"/bin/true": ["accessibility"], "/bin/false": ["accessibility"]})";
  const struct {
    const char* name;
    std::vector<const char*> whileUp;  // what others write into the file
    std::vector<const char*> whileDown;
    bool told;
  } cases[] = {
      {"nothing", {}, {}, true},
      {"another grant is written while the bar runs", {more.c_str()}, {}, true},
      {"it is given anew while the bar runs", {"{}", granted.c_str()}, {}, false},
      {"it is given anew while the bar is down", {}, {"{}", granted.c_str()}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.filePath("access.json").toStdString();
    const auto start = [&] {
      return std::make_unique<AccessStore>(
          desktop::JsonFile(path),
          GrantTimes(desktop::JsonFile(folder.filePath("times.json").toStdString())));
    };
    auto written = std::filesystem::file_time_type::clock::now();
    const auto write = [&](const char* contents) {
      std::ofstream(path) << contents;
      std::filesystem::last_write_time(path, written += seconds(1));
    };
    auto store = start();
    ASSERT_TRUE(store->grant("/bin/true", Capability::accessibility));
    for (const char* contents : c.whileUp) {
      write(contents);
      store->refresh();
    }
    store.reset();
    for (const char* contents : c.whileDown) write(contents);
    store = start();
    EXPECT_TRUE(store->allows("/bin/true", Capability::accessibility));
    EXPECT_EQ(store->since("/bin/true", Capability::accessibility).has_value(), c.told);
    ASSERT_TRUE(store->grant("/bin/cat", Capability::accessibility));
    EXPECT_TRUE(store->since("/bin/cat", Capability::accessibility));
  }
}

}  // namespace
}  // namespace tarnwick::bar
