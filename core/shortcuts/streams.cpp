#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

StreamId newStreamId() {
  static StreamId last = 0;
  return ++last;
}

std::map<Name, StreamActions>& table(Handlers& handlers, const Name&) {
  return handlers.streams;
}

std::map<Shortcut, StreamActions>& table(Handlers& handlers, const Shortcut&) {
  return handlers.shortcutStreams;
}

template <class Subject>
void removeStreamHandlerEntry(Handlers& handlers, const Subject& subject, StreamId id) {
  auto& streams = table(handlers, subject);
  const auto entry = streams.find(subject);
  if (entry == streams.end()) return;
  // An action may hold the awaiting task, and that more streams.
  const auto dropped = entry->second.extract(id);
  if (entry->second.empty()) streams.erase(entry);
}

std::optional<Shortcut> shortcutOf(const Name& name) {
  return getShortcut(name);
}

std::optional<Shortcut> shortcutOf(const Shortcut& shortcut) {
  return shortcut;
}

template <class Subject>
EventStream<EventType> makeStream(const Subject& subject, std::optional<EventType> only) {
  Module& module = Module::shared();
  const auto channel = std::make_shared<StreamChannel<EventType>>();
  const auto id = newStreamId();
  const auto add = [&](Handlers& handlers, EventType type) {
    table(handlers, subject)[subject].emplace(id, [channel, type, only] {
      if (!only || type == *only) channel->yield(type);
    });
  };
  add(module.keyDown, EventType::keyDown);
  add(module.keyUp, EventType::keyUp);
  registerIfNeeded(subject);
  return {channel, Registration([subject, id] {
            const auto& services = Module::shared().services;
            if (!services) return;
            services->loop.post([subject, id] {
              removeStreamHandlerEntry(Module::shared().keyDown, subject, id);
              removeStreamHandlerEntry(Module::shared().keyUp, subject, id);
              if (const auto shortcut = shortcutOf(subject)) releaseUnlessActive(*shortcut);
            });
          })};
}

}  // namespace

EventStream<EventType> events(const Name& name) {
  return makeStream(name, std::nullopt);
}

EventStream<EventType> events(EventType type, const Name& name) {
  return makeStream(name, type);
}

EventStream<EventType> events(const Shortcut& shortcut) {
  return makeStream(shortcut, std::nullopt);
}

EventStream<EventType> events(EventType type, const Shortcut& shortcut) {
  return makeStream(shortcut, type);
}

}  // namespace tarnwick::KeyboardShortcuts
