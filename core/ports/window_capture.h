#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "common/base/bitmap.h"
#include "common/base/geometry.h"
#include "common/base/registration.h"

namespace tarnwick {

// One window that can be pictured, off screen or not.
struct CapturableWindow {
  std::uint64_t id = 0;
  Rect frame;
};

// Still pictures of single windows. Every callback is called exactly once, in a later turn of the
// loop, also when the desktop never answers.
class WindowCapture {
 public:
  virtual ~WindowCapture() = default;

  // Whether this process may picture other applications' windows. Costs no round trip and never
  // asks the user.
  virtual bool preflight() = 0;
  // Asks the user when needed; does not wait for the answer.
  virtual void request() = 0;
  // Called after the answer of preflight() may have changed.
  virtual Registration onAccessChanged(std::function<void()> callback) = 0;

  // All windows, those off screen included; absent when they cannot be had.
  virtual void windows(
      std::function<void(std::optional<std::vector<CapturableWindow>>)> callback) = 0;
  // That window alone on a transparent ground, without the pointer, scaled to the given pixels.
  // Absent when it is gone or cannot be pictured.
  virtual void capture(std::uint64_t window, int pixelWidth, int pixelHeight,
                       std::function<void(std::optional<Bitmap>)> callback) = 0;
};

}  // namespace tarnwick
