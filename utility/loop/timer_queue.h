#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "common/files/file.h"
#include "core/ports/main_loop.h"

namespace tarnwick {

// Everything that waits for its time, on one timerfd of the clock that counts through suspend. The
// descriptor becomes readable when something is due and never otherwise. Always held by a
// std::shared_ptr.
class TimerQueue : public std::enable_shared_from_this<TimerQueue> {
 public:
  TimerQueue();  // throws std::system_error when the system has no timer left

  int descriptor() const { return timer_.get(); }

  // An interval of 0 is for once.
  Registration add(Duration delay, Duration interval, std::function<void()> work);

  // Runs what is due, in order of its time. Work may run a loop of its own that calls this again.
  void runDue();

  void clear();

  // Time since start-up, suspended time among it.
  static Duration now();

 private:
  struct Timer {
    std::uint64_t id = 0;
    Duration due{};
    Duration interval{};
    std::function<void()> work;
  };
  using Key = std::pair<Duration, std::uint64_t>;

  void insert(std::shared_ptr<Timer> timer);
  void arm();

  desktop::UniqueFd timer_;
  std::map<Key, std::shared_ptr<Timer>> waiting_;
  std::uint64_t nextId_ = 0;
  Duration armedFor_{};  // what the descriptor is set to; 0 when it is off
};

}  // namespace tarnwick
