#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

#include "core/ports/main_loop.h"
#include "utility/loop/timer_queue.h"

namespace tarnwick {

// The run loop on Qt's. Posted work and timers also run inside nested loops, such as an open
// menu's. To be used on the thread that made it only.
class QtMainLoop : public QObject, public MainLoop {
 public:
  QtMainLoop();
  ~QtMainLoop() override;

  void post(std::function<void()> work) override;
  Registration callAfter(Duration delay, std::function<void()> work) override;
  Registration callEvery(Duration interval, std::function<void()> work) override;
  Duration now() const override { return TimerQueue::now(); }
  void pause(Duration length) override;

  // Forgets all work that waits, and with it the tasks that sleep.
  void clear();

 protected:
  bool event(QEvent* event) override;

 private:
  struct Posted {
    std::uint64_t number;
    std::function<void()> work;
  };

  void wake();
  void runPosted();

  std::deque<Posted> posted_;
  std::uint64_t nextNumber_ = 0;
  bool wakePending_ = false;
  const std::shared_ptr<TimerQueue> timers_ = std::make_shared<TimerQueue>();
  QSocketNotifier timerNotifier_{timers_->descriptor(), QSocketNotifier::Read};
};

}  // namespace tarnwick
