#pragma once

#include <functional>
#include <utility>

namespace tarnwick {

// Owner of something registered: an observer, a timer, a monitor. Dropping it is the undo.
class [[nodiscard]] Registration {
 public:
  Registration() = default;
  explicit Registration(std::function<void()> undo) : undo_(std::move(undo)) {}
  Registration(Registration&& other) noexcept : undo_(std::exchange(other.undo_, nullptr)) {}
  Registration& operator=(Registration&& other) noexcept {
    if (this != &other) {
      reset();
      undo_ = std::exchange(other.undo_, nullptr);
    }
    return *this;
  }
  ~Registration() { reset(); }

  void reset() {
    if (auto undo = std::exchange(undo_, nullptr)) undo();
  }
  explicit operator bool() const { return static_cast<bool>(undo_); }

 private:
  std::function<void()> undo_;
};

}  // namespace tarnwick
