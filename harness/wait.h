#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>

namespace tarnwick::test {

// Runs the event loop until `condition` holds. False when it still does not after `deadline`, which
// only bounds a failure: nothing waits this long that goes well.
template <typename Condition>
[[nodiscard]] bool waitFor(Condition condition,
                           std::chrono::milliseconds deadline = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  QTimer wake;
  wake.start(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

// Lets `length` pass with the event loop running: for showing that something does not happen.
inline void letPass(std::chrono::milliseconds length) {
  QEventLoop loop;
  QTimer::singleShot(length, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace tarnwick::test
