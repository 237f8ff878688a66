#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "common/base/registration.h"
#include "core/ports/task.h"

namespace tarnwick::KeyboardShortcuts {

// What is on its way from a stream's source, which owns it, to the task that awaits it.
template <class T>
class StreamChannel {
 public:
  explicit StreamChannel(std::size_t capacity = std::numeric_limits<std::size_t>::max())
      : capacity_(capacity) {}

  // Beyond the capacity, the oldest values go.
  void yield(T value) {
    if (auto waiter = std::exchange(waiter_, nullptr)) return waiter(std::move(value));
    values_.push_back(std::move(value));
    if (values_.size() > capacity_) values_.pop_front();
  }

  void take(std::function<void(std::optional<T>)> waiter) {
    if (values_.empty()) {
      waiter_ = std::move(waiter);
      return;
    }
    std::optional<T> value = std::move(values_.front());
    values_.pop_front();
    waiter(std::move(value));
  }

 private:
  const std::size_t capacity_;
  std::deque<T> values_;
  std::function<void(std::optional<T>)> waiter_;  // holds the awaiting task
};

// Values over time, awaited by one task:
//
//   const std::optional<EventType> event = co_await stream.next();
//
// An absent value is the end: the task was cancelled, or the source is gone. Dropping the stream
// tells its source that nobody listens any more.
template <class T>
class [[nodiscard]] EventStream {
 public:
  EventStream(std::weak_ptr<StreamChannel<T>> channel, Registration listening)
      : channel_(std::move(channel)), listening_(std::move(listening)) {}

  Answer<std::optional<T>> next() const {
    return {[weak = channel_](std::function<void(std::optional<T>)> deliver) {
              if (const auto channel = weak.lock()) {
                channel->take(std::move(deliver));
              } else {
                deliver(std::nullopt);
              }
            },
            std::optional<std::optional<T>>(std::in_place)};
  }

 private:
  std::weak_ptr<StreamChannel<T>> channel_;
  Registration listening_;
};

}  // namespace tarnwick::KeyboardShortcuts
