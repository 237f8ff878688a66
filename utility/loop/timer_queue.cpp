#include "utility/loop/timer_queue.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <system_error>

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

// So that no sum of times overflows.
constexpr Duration longest = 24h * 365 * 100;

}  // namespace

TimerQueue::TimerQueue() : timer_(timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
  if (!timer_) throw std::system_error(errno, std::generic_category(), "timerfd_create");
}

Duration TimerQueue::now() {
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Registration TimerQueue::add(Duration delay, Duration interval, std::function<void()> work) {
  const auto timer = std::make_shared<Timer>();
  timer->id = nextId_++;
  timer->due = now() + std::clamp(delay, Duration{}, longest);
  timer->interval = std::clamp(interval, Duration{}, longest);
  timer->work = std::move(work);
  insert(timer);
  arm();
  return Registration([queue = weak_from_this(), weak = std::weak_ptr(timer)] {
    const auto self = queue.lock();
    const auto dropped = weak.lock();
    if (self && dropped && self->waiting_.erase({dropped->due, dropped->id}) > 0) self->arm();
  });
}

void TimerQueue::runDue() {
  const auto self = shared_from_this();
  std::uint64_t expirations = 0;
  while (read(timer_.get(), &expirations, sizeof expirations) < 0 && errno == EINTR) {
  }
  armedFor_ = {};
  const Duration time = now();
  while (!waiting_.empty() && waiting_.begin()->first.first <= time) {
    const auto timer = waiting_.extract(waiting_.begin()).mapped();
    if (timer->interval > Duration{}) {
      // In step with its first time; what was missed, in a suspend for example, is left out.
      timer->due += ((time - timer->due) / timer->interval + 1) * timer->interval;
      insert(timer);
    }
    arm();  // a loop run by the work waits for the others
    timer->work();
  }
  arm();
}

void TimerQueue::clear() {
  // Work that is dropped may add or drop other work while it goes.
  while (!waiting_.empty()) const auto dropped = std::exchange(waiting_, {});
  arm();
}

void TimerQueue::insert(std::shared_ptr<Timer> timer) {
  const Key key{timer->due, timer->id};
  waiting_.emplace(key, std::move(timer));
}

void TimerQueue::arm() {
  const Duration due =
      waiting_.empty() ? Duration{} : std::max(waiting_.begin()->first.first, Duration{1});
  if (due == armedFor_) return;
  armedFor_ = due;
  itimerspec setting{};
  setting.it_value.tv_sec = std::chrono::duration_cast<std::chrono::seconds>(due).count();
  setting.it_value.tv_nsec = (due % 1s).count();
  timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME, &setting, nullptr);
}

}  // namespace tarnwick
