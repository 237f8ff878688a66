#include "bar/access/access_store.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

namespace tarnwick::bar {
namespace {

TEST(AccessStoreTest, AGrantsTimeIsToldWhileTheBarHasSeenAllThatBecameOfIt) {
  constexpr auto capability = Capability::accessibility;
  const struct {
    const char* name;
    bool barIsUp;
    std::vector<const char*> written;  // into the file, by others
    bool told;
  } cases[] = {
      {"nothing happens", false, {}, true},
      {"another is given", true, {R"({"/a": ["accessibility"], "/b": ["accessibility"]})"}, true},
      {"it is taken and given anew", true, {"{}", R"({"/a": ["accessibility"]})"}, false},
      {"it may have been", false, {R"({"/a": ["accessibility"]})"}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.path().toStdString();
    std::optional<AccessStore> store;
    const auto start = [&] {
      store.emplace(desktop::JsonFile(path / "access.json"),
                    GrantTimes(desktop::JsonFile(path / "times.json")));
    };
    start();
    ASSERT_TRUE(store->grant("/a", capability));
    if (!c.barIsUp) store.reset();
    // What cannot be written now must not be taken for written later.
    const std::filesystem::path lock = path / "times.json.lock";
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    auto changedAt = std::filesystem::last_write_time(path / "access.json");
    for (const char* contents : c.written) {
      std::ofstream(path / "access.json") << contents;
      std::filesystem::last_write_time(path / "access.json", changedAt += std::chrono::seconds(1));
      if (store) store->refresh();
    }
    for (const char* writable : {"no", "yes"}) {
      start();
      EXPECT_TRUE(store->allows("/a", capability));
      EXPECT_EQ(store->since("/a", capability).has_value(), c.told) << writable;
      std::filesystem::remove(lock);
    }
  }
}

}  // namespace
}  // namespace tarnwick::bar
