#include "utility/loop/qt_main_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <utility>

namespace tarnwick {

using namespace std::chrono_literals;

QtMainLoop::QtMainLoop() {
  connect(&timerNotifier_, &QSocketNotifier::activated, this, [this] { timers_->runDue(); });
}

QtMainLoop::~QtMainLoop() {
  clear();
}

void QtMainLoop::post(std::function<void()> work) {
  posted_.push_back({nextNumber_++, std::move(work)});
  wake();
}

Registration QtMainLoop::callAfter(Duration delay, std::function<void()> work) {
  return timers_->add(delay, {}, std::move(work));
}

Registration QtMainLoop::callEvery(Duration interval, std::function<void()> work) {
  const Duration atLeast = std::max<Duration>(interval, 1ms);
  return timers_->add(atLeast, atLeast, std::move(work));
}

void QtMainLoop::pause(Duration length) {
  if (length <= Duration{}) return;
  const Duration end = now() + length;
  timespec time{};
  time.tv_sec = std::chrono::duration_cast<std::chrono::seconds>(end).count();
  time.tv_nsec = (end % 1s).count();
  while (clock_nanosleep(CLOCK_BOOTTIME, TIMER_ABSTIME, &time, nullptr) == EINTR) {
  }
}

void QtMainLoop::clear() {
  // Work that is dropped may post while it goes.
  while (!posted_.empty()) const auto dropped = std::exchange(posted_, {});
  timers_->clear();
  if (!posted_.empty()) clear();
}

bool QtMainLoop::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  runPosted();
  return true;
}

void QtMainLoop::wake() {
  if (std::exchange(wakePending_, true)) return;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void QtMainLoop::runPosted() {
  wakePending_ = false;
  const auto end = nextNumber_;  // what is posted from here on belongs to a later turn
  while (!posted_.empty() && posted_.front().number < end) {
    const auto work = std::move(posted_.front().work);
    posted_.pop_front();
    if (!posted_.empty()) wake();  // should the work run a loop of its own, the rest is run there
    work();
  }
  if (posted_.empty() && std::exchange(wakePending_, false)) {
    QCoreApplication::removePostedEvents(this, QEvent::User);
  } else if (!posted_.empty()) {
    wake();
  }
}

}  // namespace tarnwick
