#include <utility>

#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

using Channel = StreamChannel<std::monostate>;

struct Pace {
  Duration delay;
  Duration interval;
};

// Owns at most one task; starting another cancels the one before.
class RepeatingTaskController {
 public:
  ~RepeatingTaskController() { cancel(); }
  void start(Task task) {
    cancel();
    task_ = std::move(task);
  }
  void cancel() { std::exchange(task_, Task()).cancel(); }

 private:
  Task task_;
};

Task repeat(MainLoop& /*loop*/, std::weak_ptr<Channel> out, Pace pace,
            std::function<bool()> goesOn) {
  co_await sleepFor(pace.delay);
  for (;;) {
    const bool cancelled = co_await isCancelled();
    if (cancelled || !goesOn()) co_return;
    if (const auto channel = out.lock()) channel->yield({});
    co_await sleepFor(pace.interval);
  }
}

// From presses and releases to repetitions. `held` is told of each press and answers what has to
// hold for its repetitions to go on.
Task pump(MainLoop& loop, EventStream<EventType> source, std::shared_ptr<Channel> out, Pace pace,
          std::function<std::function<bool()>()> held) {
  RepeatingTaskController repeating;
  for (;;) {
    const std::optional<EventType> event = co_await source.next();
    if (!event) co_return;
    if (*event == EventType::keyUp) {
      repeating.cancel();
      continue;
    }
    auto goesOn = held();
    out->yield({});
    repeating.start(repeat(loop, out, pace, std::move(goesOn)));
  }
}

EventStream<std::monostate> makeRepeating(EventStream<EventType> source,
                                          std::function<std::function<bool()>()> held) {
  const auto& services = Module::shared().services;
  const auto out = std::make_shared<Channel>(1);
  if (!services) return {out, Registration()};
  const Pace pace{services->layout.keyRepeatDelay(), services->layout.keyRepeatInterval()};
  const Task task = pump(services->loop, std::move(source), out, pace, std::move(held));
  return {out, Registration([task] { task.cancel(); })};
}

}  // namespace

EventStream<std::monostate> repeatingKeyDownEvents(const Name& name) {
  return makeRepeating(events(name), [name] {
    return [name, heldShortcut = getShortcut(name)] {
      return !isPaused() && isEnabled(name) && heldShortcut && getShortcut(name) == heldShortcut;
    };
  });
}

EventStream<std::monostate> repeatingKeyDownEvents(const Shortcut& shortcut) {
  return makeRepeating(events(shortcut), [shortcut] {
    return [shortcut] { return !isPaused() && Module::shared().hotKeys.contains(shortcut); };
  });
}

}  // namespace tarnwick::KeyboardShortcuts
