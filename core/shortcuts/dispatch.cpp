#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

Handlers& handlers(EventType type) {
  Module& module = Module::shared();
  return type == EventType::keyDown ? module.keyDown : module.keyUp;
}

bool isDisabled(const Name& name) {
  return Module::shared().disabledNames.contains(name);
}

bool hasHandlers(const Name& name) {
  return Module::shared().keyDown.has(name) || Module::shared().keyUp.has(name);
}

bool hasStreams(const Name& name) {
  return Module::shared().keyDown.streams.contains(name) ||
         Module::shared().keyUp.streams.contains(name);
}

bool hasHardCodedStreamHandlers(const Shortcut& shortcut) {
  return Module::shared().keyDown.shortcutStreams.contains(shortcut) ||
         Module::shared().keyUp.shortcutStreams.contains(shortcut);
}

std::set<Name> namesWithAllHandlers() {
  std::set<Name> names;
  for (const auto type : {EventType::keyDown, EventType::keyUp}) {
    for (const auto& [name, actions] : handlers(type).named) names.insert(name);
    for (const auto& [name, actions] : handlers(type).streams) names.insert(name);
  }
  return names;
}

void addHandler(EventType type, const Name& name, Action action) {
  handlers(type).named[name].push_back(std::move(action));
  registerIfNeeded(name);
}

bool answersTo(const Name& name, const Shortcut& shortcut) {
  return !isDisabled(name) && getShortcut(name) == shortcut;
}

}  // namespace

bool Handlers::has(const Name& name) const {
  const auto list = named.find(name);
  if (list != named.end() && !list->second.empty()) return true;
  const auto stream = streams.find(name);
  return stream != streams.end() && !stream->second.empty();
}

void onKeyDown(const Name& name, Action action) {
  addHandler(EventType::keyDown, name, std::move(action));
}

void onKeyUp(const Name& name, Action action) {
  addHandler(EventType::keyUp, name, std::move(action));
}

void removeHandler(const Name& name) {
  Module& module = Module::shared();
  module.keyDown.named.erase(name);
  module.keyUp.named.erase(name);
  if (!isDisabled(name) && hasStreams(name)) return;
  if (const auto shortcut = getShortcut(name)) releaseUnlessActive(*shortcut, &name);
}

void removeAllHandlers() {
  std::set<Name> names;
  for (const auto type : {EventType::keyDown, EventType::keyUp}) {
    for (const auto& [name, actions] : std::exchange(handlers(type).named, {})) names.insert(name);
  }
  for (const Name& name : names) {
    if (const auto shortcut = getShortcut(name)) releaseUnlessActive(*shortcut);
  }
}

void registerIfNeeded(const Name& name) {
  if (!hasActiveHandlers(name)) return;
  if (const auto shortcut = getShortcut(name)) registerIfNeeded(*shortcut);
}

void registerIfNeeded(const Shortcut& shortcut) {
  Module& module = Module::shared();
  if (!module.services || module.hotKeys.contains(shortcut)) return;
  HotKeyCenter& center = HotKeyCenter::shared();
  const auto hotKey = std::make_shared<HotKey>();
  hotKey->carbonKeyCode = shortcut.carbonKeyCode();
  hotKey->carbonModifiers = shortcut.carbonModifiers();
  hotKey->onKeyDown = [shortcut] { handleKeyEvent(EventType::keyDown, shortcut); };
  hotKey->onKeyUp = [shortcut] { handleKeyEvent(EventType::keyUp, shortcut); };
  hotKey->id = center.nextHotKeyId();
  if (!center.registerHotKey(hotKey)) return;
  hotKey->onRegistrationFailed = [shortcut, weak = std::weak_ptr(hotKey)] {
    const auto failed = weak.lock();
    auto& hotKeys = Module::shared().hotKeys;
    const auto entry = hotKeys.find(shortcut);
    if (failed && entry != hotKeys.end() && entry->second == failed) hotKeys.erase(entry);
  };
  module.hotKeys.emplace(shortcut, hotKey);
}

void releaseUnlessActive(const Shortcut& shortcut, const Name* excluded) {
  if (!isShortcutActive(shortcut, excluded)) Module::shared().hotKeys.erase(shortcut);
}

bool isShortcutActive(const Shortcut& shortcut, const Name* excluded) {
  for (const Name& name : namesWithAllHandlers()) {
    if (excluded != nullptr && name == *excluded) continue;
    if (hasActiveHandlers(name) && getShortcut(name) == shortcut) return true;
  }
  return hasHardCodedStreamHandlers(shortcut);
}

bool hasActiveHandlers(const Name& name) {
  return !isDisabled(name) && hasHandlers(name);
}

void handleKeyEvent(EventType type, const Shortcut& shortcut) {
  if (Module::shared().isPaused) return;
  const Handlers present = handlers(type);  // actions may change the tables
  for (const auto& [name, actions] : present.named) {
    if (!answersTo(name, shortcut)) continue;
    for (const Action& action : actions) action();
  }
  for (const auto& [name, actions] : present.streams) {
    if (!answersTo(name, shortcut)) continue;
    for (const auto& [id, action] : actions) action();
  }
  const auto own = present.shortcutStreams.find(shortcut);
  if (own == present.shortcutStreams.end()) return;
  for (const auto& [id, action] : own->second) action();
}

}  // namespace tarnwick::KeyboardShortcuts
