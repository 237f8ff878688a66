#pragma once

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/ports/main_loop.h"

namespace tarnwick {

// Work on the main thread that suspends without blocking it.
//
// A coroutine whose return type is Task and whose first parameter is the MainLoop& it runs on. Its
// other parameters are values: references and `this` would dangle across a suspension; shared
// owners are passed as std::shared_ptr. The body starts in a later turn of the loop, never inside
// the caller. Inside it:
//
//   bool whole = co_await sleepFor(250ms);    // false when cut short by cancellation
//   bool marked = co_await isCancelled();
//   co_await otherTask;                       // until that one has ended
//   T value = co_await Answer<T>{[&](auto callback) { service.ask(callback); }};
//
// An await is a statement or an initialiser of its own: inside a condition GCC 12 miscompiles it.
//
// The handle may be dropped at any time; the work goes on.
class Task {
 public:
  class promise_type;

  Task() = default;

  // Marks the task and ends its present sleep, and every later one, at once. What the task does
  // then is its own business. No effect once it has ended.
  void cancel() const;
  // Whether the body has run to its end.
  bool isDone() const { return !state_ || state_->done; }
  explicit operator bool() const { return static_cast<bool>(state_); }
  bool operator==(const Task&) const = default;

  // For co_await: suspends the awaiting task until this one has ended. An empty handle is ended.
  bool await_ready() const { return isDone(); }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> waiter) const;
  void await_resume() const {}

 private:
  // A suspended coroutine frame: resumed once, or destroyed with its last owner.
  class Suspension {
   public:
    explicit Suspension(std::coroutine_handle<> frame) : frame_(frame) {}
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;
    ~Suspension() {
      if (frame_) frame_.destroy();
    }
    void resume() {
      if (auto frame = std::exchange(frame_, nullptr)) frame.resume();
    }

   private:
    std::coroutine_handle<> frame_;
  };

  struct State {
    bool cancelled = false;
    bool done = false;
    std::function<void()> wake;                  // present while asleep
    std::vector<std::function<void()>> waiters;  // resumed when done
  };

  explicit Task(std::shared_ptr<State> state) : state_(std::move(state)) {}

  std::shared_ptr<State> state_;
};

struct Sleep {
  Duration length;
};
struct CancellationCheck {};

// What a callback delivers: `start` is given the callback and calls it once, at any time.
template <class T>
struct Answer {
  std::function<void(std::function<void(T)>)> start;
  // Delivered at once when the task is cancelled. Absent: the task waits for its answer all the
  // same.
  std::optional<T> whenCancelled = std::nullopt;
};

inline Sleep sleepFor(Duration length) {
  return {length};
}
inline CancellationCheck isCancelled() {
  return {};
}

class Task::promise_type {
 public:
  template <class... Arguments>
  explicit promise_type(MainLoop& loop, Arguments&&...) : loop_(loop) {}

  // A frame that is destroyed unfinished counts as ended, so that nobody waits for it for ever.
  ~promise_type() { finish(); }

  Task get_return_object() { return Task(state_); }

  auto initial_suspend() noexcept {
    struct Start {
      MainLoop& loop;
      bool await_ready() const noexcept { return false; }
      void await_suspend(std::coroutine_handle<> frame) const {
        loop.post([start = std::make_shared<Suspension>(frame)] { start->resume(); });
      }
      void await_resume() const noexcept {}
    };
    return Start{loop_};
  }
  std::suspend_never final_suspend() noexcept { return {}; }
  void return_void() {}
  void unhandled_exception() { throw; }

  auto await_transform(Sleep sleep) {
    struct Sleeper {
      MainLoop& loop;
      std::shared_ptr<State> state;
      Duration length;
      bool whole = false;
      Registration timer;

      bool await_ready() const { return state->cancelled; }
      void await_suspend(std::coroutine_handle<> frame) {
        auto suspension = std::make_shared<Suspension>(frame);
        timer = loop.callAfter(length, [this, suspension] {
          whole = true;
          state->wake = nullptr;
          suspension->resume();
        });
        // The timer alone owns the sleeping frame, so that a loop that goes away frees it.
        state->wake = [this, weak = std::weak_ptr(suspension)] {
          auto sleeper = weak.lock();
          timer.reset();
          if (sleeper) loop.post([sleeper] { sleeper->resume(); });
        };
      }
      bool await_resume() const { return whole; }
    };
    return Sleeper{loop_, state_, sleep.length, false, {}};
  }

  auto await_transform(CancellationCheck) {
    struct Check {
      bool cancelled;
      bool await_ready() const { return true; }
      void await_suspend(std::coroutine_handle<>) const {}
      bool await_resume() const { return cancelled; }
    };
    return Check{state_->cancelled};
  }

  // The task goes on in a later turn than the callback's.
  template <class T>
  auto await_transform(Answer<T> answer) {
    struct Waiter {
      MainLoop& loop;
      std::shared_ptr<State> state;
      Answer<T> answer;
      std::optional<T> value;

      bool await_ready() {
        if (!state->cancelled || !answer.whenCancelled) return false;
        value = std::move(answer.whenCancelled);
        return true;
      }
      void await_suspend(std::coroutine_handle<> frame) {
        // The callback alone owns the waiting frame; whoever comes first takes it.
        const auto waiting =
            std::make_shared<std::shared_ptr<Suspension>>(std::make_shared<Suspension>(frame));
        if (answer.whenCancelled) {
          state->wake = [this, weak = std::weak_ptr(waiting)] {
            const auto unanswered = weak.lock();
            if (unanswered) deliver(*unanswered, std::move(*answer.whenCancelled));
          };
        }
        answer.start([this, waiting](T delivered) { deliver(*waiting, std::move(delivered)); });
      }
      T await_resume() { return std::move(*value); }

      void deliver(std::shared_ptr<Suspension>& waiting, T delivered) {
        auto suspension = std::exchange(waiting, nullptr);
        if (!suspension) return;
        state->wake = nullptr;
        loop.post([this, suspension = std::move(suspension),
                   moved = std::make_shared<T>(std::move(delivered))] {
          value = std::move(*moved);
          suspension->resume();
        });
      }
    };
    return Waiter{loop_, state_, std::move(answer), std::nullopt};
  }

  const Task& await_transform(const Task& task) { return task; }

 private:
  friend class Task;

  void finish() {
    state_->done = true;
    state_->wake = nullptr;
    for (auto& waiter : std::exchange(state_->waiters, {})) loop_.post(std::move(waiter));
  }

  MainLoop& loop_;
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

inline void Task::cancel() const {
  if (!state_ || state_->done || state_->cancelled) return;
  state_->cancelled = true;
  if (auto wake = std::exchange(state_->wake, nullptr)) wake();
}

template <class Promise>
void Task::await_suspend(std::coroutine_handle<Promise> waiter) const {
  state_->waiters.push_back(
      [suspension = std::make_shared<Suspension>(waiter)] { suspension->resume(); });
}

}  // namespace tarnwick
