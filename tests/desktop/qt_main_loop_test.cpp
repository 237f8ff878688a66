#include "utility/loop/qt_main_loop.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/ports/task.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Log = std::vector<std::string>;

class QtMainLoopTest : public testing::Test {
 protected:
  std::function<void()> note(const std::string& word) {
    return [this, word] { log_.push_back(word); };
  }
  void runUntil(std::size_t entries) {
    while (log_.size() < entries) events_.processEvents(QEventLoop::WaitForMoreEvents);
  }
  // Like an open menu: returns when the log has grown to `entries`.
  std::function<void()> runInside(std::size_t entries) {
    return [this, entries] {
      log_.push_back("in");
      runUntil(entries);
      log_.push_back("out");
    };
  }

  Log log_;
  QEventLoop events_;
  QtMainLoop loop_;
};

TEST_F(QtMainLoopTest, PostedWorkKeepsItsOrderAlsoAcrossANestedLoop) {
  loop_.post(runInside(4));
  loop_.post(note("b"));
  loop_.post([this] {
    log_.push_back("c");
    loop_.post(note("later"));
  });
  runUntil(5);
  EXPECT_EQ(log_, (Log{"in", "b", "c", "later", "out"}));
}

TEST_F(QtMainLoopTest, TimersRunInOrderOfTheirTimeAlsoInsideANestedLoop) {
  const auto late = loop_.callAfter(20ms, note("late"));
  const auto equal = loop_.callAfter(20ms, note("equal"));
  const auto nested = loop_.callAfter(5ms, runInside(4));
  const auto early = loop_.callAfter(-1ms, note("early"));
  loop_.pause(10ms);  // two are due at once
  runUntil(5);
  EXPECT_EQ(log_, (Log{"early", "in", "late", "equal", "out"}));
}

TEST_F(QtMainLoopTest, ATimerDroppedInsideATimerDoesNotRun) {
  Registration repeating;
  Registration next;
  repeating = loop_.callEvery(1ms, [&] {
    log_.push_back("tick");
    next.reset();
    if (log_.size() == 3) repeating.reset();
  });
  next = loop_.callAfter(1ms, note("dropped"));
  loop_.pause(5ms);
  runUntil(3);
  const auto end = loop_.callAfter(5ms, note("end"));
  runUntil(4);
  EXPECT_EQ(log_, (Log{"tick", "tick", "tick", "end"}));
}

TEST_F(QtMainLoopTest, ARepeatingTimerThatMissedItsTurnsDoesNotMakeUpForThem) {
  const Duration start = loop_.now();
  const auto repeating = loop_.callEvery(1ms, [&] {
    if (log_.empty()) loop_.pause(50ms);
    log_.push_back("tick");
  });
  runUntil(4);
  // The turn missed during the pause is made late, and from then on there is one per interval.
  EXPECT_GE(loop_.now() - start, 51ms + 2 * 1ms);
}

Task sleepForEver(MainLoop&) {
  co_await sleepFor(24h);
}
Task await(MainLoop&, Task other, std::shared_ptr<int> held) {
  co_await other;
  ++*held;
}

TEST_F(QtMainLoopTest, ClearingFreesTasksThatSleepAndThoseThatAwaitThem) {
  const auto held = std::make_shared<int>(0);
  await(loop_, sleepForEver(loop_), held);
  loop_.post(note("started"));
  runUntil(1);
  loop_.clear();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(*held, 0);
}

}  // namespace
}  // namespace tarnwick
