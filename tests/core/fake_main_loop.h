#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "core/ports/main_loop.h"

namespace tarnwick::test {

// A run loop under a clock that moves only when told to.
class FakeMainLoop : public MainLoop {
 public:
  ~FakeMainLoop() override;

  void post(std::function<void()> work) override { posted_->push_back(std::move(work)); }
  Registration callAfter(Duration delay, std::function<void()> work) override;
  Registration callEvery(Duration interval, std::function<void()> work) override;
  Duration now() const override { return now_; }
  void pause(Duration length) override;

  // Runs what is posted, and what that posts, until nothing is left.
  void runPosted();
  // Lets time pass, running what falls due in order.
  void advance(Duration length);
  std::size_t timerCount() const { return timers_->size(); }

  // Called at the end of every blocking pause: what other processes did meanwhile.
  std::function<void()> onPause;

 private:
  struct Timer {
    Duration interval{};  // 0 for once
    std::shared_ptr<std::function<void()>> work;
  };
  using Timers = std::map<std::pair<Duration, int>, Timer>;

  Registration schedule(Duration due, Timer timer);

  Duration now_{};
  int next_ = 0;
  std::shared_ptr<std::deque<std::function<void()>>> posted_ =
      std::make_shared<std::deque<std::function<void()>>>();
  std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
};

}  // namespace tarnwick::test
