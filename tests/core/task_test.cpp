#include "core/ports/task.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "tests/core/fake_main_loop.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::FakeMainLoop;

using Log = std::shared_ptr<std::vector<std::string>>;

Task sleeper(MainLoop& loop, Log log, Duration first, Duration second) {
  log->push_back("start");
  for (const Duration length : {first, second}) {
    const bool whole = co_await sleepFor(length);
    const bool marked = co_await isCancelled();
    log->push_back((whole ? "slept " : "woken ") + std::to_string(loop.now() / 1ms) +
                   (marked ? " cancelled" : ""));
  }
}

Task waiter(MainLoop& loop, Log log, Task other) {
  co_await other;
  log->push_back("waited " + std::to_string(loop.now() / 1ms));
}

struct Case {
  const char* name;
  int cancelAt;  // milliseconds; negative for never
  std::vector<std::string> expected;
};

TEST(TaskTest, SleepsAndIsCutShortByCancellation) {
  const Case cases[] = {
      {"undisturbed", -1, {"start", "slept 100", "slept 150"}},
      {"before it starts", 0, {"start", "woken 0 cancelled", "woken 0 cancelled"}},
      {"in its first sleep", 40, {"start", "woken 40 cancelled", "woken 40 cancelled"}},
      {"in its second sleep", 120, {"start", "slept 100", "woken 120 cancelled"}},
      {"after its end", 200, {"start", "slept 100", "slept 150"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    FakeMainLoop loop;
    const auto log = std::make_shared<std::vector<std::string>>();
    const Task task = sleeper(loop, log, 100ms, 50ms);
    EXPECT_TRUE(log->empty()) << "the body must not run inside the caller";
    if (c.cancelAt >= 0) {
      if (c.cancelAt > 0) loop.advance(std::chrono::milliseconds(c.cancelAt));
      const auto before = log->size();
      task.cancel();
      EXPECT_EQ(log->size(), before) << "nothing may run inside cancel()";
    }
    loop.advance(1s);
    EXPECT_EQ(*log, c.expected);
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(loop.timerCount(), 0u);
  }
}

TEST(TaskTest, GoesOnWithoutItsHandleAndWakesThoseWhoAwaitIt) {
  FakeMainLoop loop;
  const auto log = std::make_shared<std::vector<std::string>>();
  {
    const Task task = sleeper(loop, log, 10ms, 10ms);
    waiter(loop, log, task);
    waiter(loop, log, Task());
  }
  loop.advance(1s);
  EXPECT_EQ(*log,
            (std::vector<std::string>{"start", "waited 0", "slept 10", "slept 20", "waited 20"}));
}

TEST(TaskTest, UnfinishedWorkIsFreedWithItsLoop) {
  const auto log = std::make_shared<std::vector<std::string>>();
  {
    FakeMainLoop loop;
    const Task task = sleeper(loop, log, 1h, 1h);
    waiter(loop, log, task);
    sleeper(loop, log, 1h, 1h).cancel();
    loop.advance(1s);
    sleeper(loop, log, 1h, 1h);  // never started
    EXPECT_GT(log.use_count(), 3);
  }
  EXPECT_EQ(log.use_count(), 1);
}

}  // namespace
}  // namespace tarnwick
