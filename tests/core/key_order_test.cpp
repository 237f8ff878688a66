#include "bar/row/key_order.h"

#include <gtest/gtest.h>

namespace tarnwick::bar {
namespace {

using Keys = std::vector<std::string>;

TEST(KeyOrderTest, OurOrderIsKeptAndNoKeyOfTheirsIsLost) {
  const struct {
    Keys ours, theirs, merged;
    std::size_t limit = 10;
  } cases[] = {
      {{"a", "b"}, {}, {"a", "b"}},
      {{}, {"a", "b"}, {"a", "b"}},
      {{"b", "a"}, {"a", "b"}, {"b", "a"}},
      {{"a", "c"}, {"x", "a", "y", "z", "c", "w"}, {"x", "a", "y", "z", "c", "w"}},
      {{"c", "a"}, {"a", "y", "c", "w"}, {"c", "w", "a", "y"}},
      {{"a", "b"}, {"x", "y", "b", "z"}, {"x", "a", "b"}, 3},
  };
  for (const auto& [ours, theirs, merged, limit] : cases) {
    EXPECT_EQ(mergedOrder(ours, theirs, limit), merged);
  }
}

}  // namespace
}  // namespace tarnwick::bar
