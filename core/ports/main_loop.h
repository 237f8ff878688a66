#pragma once

#include <chrono>
#include <functional>

#include "common/base/registration.h"

namespace tarnwick {

using Duration = std::chrono::nanoseconds;

// The one thread's run loop and its clock, which keeps counting while the computer sleeps.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  // Runs `work` in a later turn of the loop, in the order of posting.
  virtual void post(std::function<void()> work) = 0;

  // Runs `work` once, `delay` from now. Dropping the registration forgets it; dropping it from
  // inside `work` is allowed.
  virtual Registration callAfter(Duration delay, std::function<void()> work) = 0;

  // Runs `work` every `interval`, first one interval from now, until the registration is dropped.
  virtual Registration callEvery(Duration interval, std::function<void()> work) = 0;

  // Time since an arbitrary fixed moment.
  virtual Duration now() const = 0;

  // Blocks the thread; nothing else of the process runs meanwhile.
  virtual void pause(Duration length) = 0;
};

}  // namespace tarnwick
