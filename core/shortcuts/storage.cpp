#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

const std::string keyPrefix = "KeyboardShortcuts_";

std::string keyOf(const Name& name) {
  return keyPrefix + name.rawValue();
}

std::optional<DefaultsValue> storedValue(const Name& name) {
  const auto& services = Module::shared().services;
  return services ? services->defaults.value(keyOf(name)) : std::nullopt;
}

// Also with what cannot be read.
bool holdsAnything(const Name& name) {
  const auto& services = Module::shared().services;
  return services && services->defaults.contains(keyOf(name));
}

void releaseStored(const Name& name) {
  if (const auto old = getShortcut(name)) releaseUnlessActive(*old, &name);
}

StoredShortcut slot(const std::map<Name, StoredShortcut>& slots, const Name& name) {
  const auto found = slots.find(name);
  return found != slots.end() ? found->second : StoredShortcut(Missing());
}

void didChange(const Name& name) {
  Module::shared().slots[name] = storedShortcut(name);
  registerIfNeeded(name);
  const auto& services = Module::shared().services;
  if (services) services->notifications.post({shortcutByNameDidChange, {{"name", name}}});
}

std::map<Name, StoredShortcut> storedSlots() {
  std::map<Name, StoredShortcut> slots;
  for (const Name& name : storedNames()) slots.emplace(name, storedShortcut(name));
  return slots;
}

// Also told of this module's own writes, of which everybody knows already.
void storeDidChange() {
  Module& module = Module::shared();
  const auto before = module.slots;
  const auto now = storedSlots();
  std::set<Name> names;
  for (const auto* const slots : {&before, &now}) {
    for (const auto& [name, held] : *slots) names.insert(name);
  }
  for (const Name& name : names) {
    const auto old = slot(before, name);
    if (old == slot(now, name)) continue;
    if (const auto* const shortcut = std::get_if<Shortcut>(&old)) releaseUnlessActive(*shortcut);
    didChange(name);
  }
}

void userDefaultsSet(const Name& name, const Shortcut& shortcut) {
  releaseStored(name);
  const auto& services = Module::shared().services;
  if (services) services->defaults.set(keyOf(name), shortcut.toJson());
  didChange(name);
}

void userDefaultsDisable(const Name& name) {
  if (std::holds_alternative<Disabled>(storedShortcut(name))) return;
  releaseStored(name);
  const auto& services = Module::shared().services;
  if (services) services->defaults.set(keyOf(name), false);
  didChange(name);
}

void userDefaultsRemove(const Name& name) {
  if (!holdsAnything(name)) return;
  releaseStored(name);
  const auto& services = Module::shared().services;
  if (services) services->defaults.remove(keyOf(name));
  didChange(name);
}

}  // namespace

Name::Name(std::string rawValue, const std::optional<Shortcut>& initial)
    : rawValue_(std::move(rawValue)), initialShortcut_(initial) {
  const Module& module = Module::unchecked();
  if (!module.services) return;
  if (initial) setInitialShortcutIfNeeded(*initial, rawValue_);
  if (module.isInitialized) return;
  Module::shared().services->loop.post([] {
    Module& later = Module::shared();
    if (!later.services || later.isInitialized) return;
    HotKeyCenter::shared();
    later.isInitialized = true;
  });
}

Name Name::fromRawValue(std::string rawValue) {
  Name name;
  name.rawValue_ = std::move(rawValue);
  return name;
}

std::optional<Shortcut> Name::shortcut() const {
  return getShortcut(*this);
}

void Name::setShortcut(const std::optional<Shortcut>& shortcut) const {
  KeyboardShortcuts::setShortcut(shortcut, *this);
}

std::optional<Shortcut> Shortcut::of(const Name& name) {
  return getShortcut(name);
}

void observeStore() {
  Module& module = Module::shared();
  module.slots = storedSlots();
  module.storeObserver = module.services->defaults.onChanged(storeDidChange);
  module.layoutObserver = module.services->layout.onChanged([] {
    for (const Name& name : storedNames()) registerIfNeeded(name);
  });
}

void setInitialShortcutIfNeeded(const Shortcut& shortcut, const std::string& rawValue) {
  const Name name = Name::fromRawValue(rawValue);
  if (holdsAnything(name)) return;
  Module::shared().services->defaults.set(keyOf(name), shortcut.toJson());
  Module::shared().slots[name] = storedShortcut(name);  // so that the store's change is no news
}

StoredShortcut storedShortcut(const Name& name) {
  const auto value = storedValue(name);
  if (!value) return Missing();
  if (const bool* const wanted = std::get_if<bool>(&*value)) {
    return *wanted ? StoredShortcut(Missing()) : StoredShortcut(Disabled());
  }
  const auto* const text = std::get_if<std::string>(&*value);
  if (text == nullptr) return Missing();
  const auto shortcut = Shortcut::fromJson(*text);
  return shortcut ? StoredShortcut(*shortcut) : StoredShortcut(Missing());
}

std::optional<Shortcut> getShortcut(const Name& name) {
  const auto stored = storedShortcut(name);
  const auto* const shortcut = std::get_if<Shortcut>(&stored);
  return shortcut != nullptr ? std::optional(*shortcut) : std::nullopt;
}

void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name) {
  if (shortcut) {
    userDefaultsSet(name, *shortcut);
  } else if (name.initialShortcut()) {
    userDefaultsDisable(name);
  } else {
    userDefaultsRemove(name);
  }
}

void reset(const std::vector<Name>& names) {
  for (const Name& name : names) {
    if (name.initialShortcut()) {
      userDefaultsSet(name, *name.initialShortcut());
    } else {
      userDefaultsRemove(name);
    }
  }
}

void resetAll() {
  for (const Name& name : storedNames()) setShortcut(std::nullopt, name);
}

std::set<Name> storedNames() {
  std::set<Name> names;
  const auto& services = Module::shared().services;
  if (!services) return names;
  for (const std::string& key : services->defaults.keys()) {
    if (key.starts_with(keyPrefix)) names.insert(Name::fromRawValue(key.substr(keyPrefix.size())));
  }
  return names;
}

}  // namespace tarnwick::KeyboardShortcuts
