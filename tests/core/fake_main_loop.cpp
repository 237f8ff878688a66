#include "tests/core/fake_main_loop.h"

#include <algorithm>

namespace tarnwick::test {

// Work that is dropped may register or post while it goes: empty the queues until they stay empty.
FakeMainLoop::~FakeMainLoop() {
  while (!posted_->empty() || !timers_->empty()) {
    const auto posted = std::exchange(*posted_, {});
    const auto timers = std::exchange(*timers_, {});
  }
}

Registration FakeMainLoop::callAfter(Duration delay, std::function<void()> work) {
  return schedule(now_ + delay, {{}, std::make_shared<std::function<void()>>(std::move(work))});
}

Registration FakeMainLoop::callEvery(Duration interval, std::function<void()> work) {
  return schedule(now_ + interval,
                  {interval, std::make_shared<std::function<void()>>(std::move(work))});
}

Registration FakeMainLoop::schedule(Duration due, Timer timer) {
  const int id = next_++;
  timers_->emplace(std::pair(due, id), std::move(timer));
  return Registration([weak = std::weak_ptr(timers_), id] {
    if (const auto timers = weak.lock()) {
      const auto found = std::find_if(timers->begin(), timers->end(),
                                      [id](const auto& entry) { return entry.first.second == id; });
      if (found != timers->end()) {
        const Timer dropped = std::move(found->second);
        timers->erase(found);
      }
    }
  });
}

void FakeMainLoop::pause(Duration length) {
  now_ += length;
  if (onPause) onPause();
}

void FakeMainLoop::runPosted() {
  while (!posted_->empty()) {
    const auto work = std::move(posted_->front());
    posted_->pop_front();
    work();
  }
}

void FakeMainLoop::advance(Duration length) {
  const Duration end = now_ + length;
  runPosted();
  while (!timers_->empty() && timers_->begin()->first.first <= end) {
    auto entry = timers_->extract(timers_->begin());
    const auto [due, id] = entry.key();
    now_ = std::max(now_, due);
    const auto work = entry.mapped().work;
    if (entry.mapped().interval > Duration{}) {
      timers_->emplace(std::pair(due + entry.mapped().interval, id), entry.mapped());
    }
    (*work)();
    runPosted();
  }
  now_ = std::max(now_, end);
}

}  // namespace tarnwick::test
