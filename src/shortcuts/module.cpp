#include "shortcuts/module.h"

#include <utility>

namespace tarnwick::KeyboardShortcuts {

namespace {

std::unique_ptr<Module>& slot() {
  static auto module = std::make_unique<Module>();
  return module;
}

}  // namespace

Module& Module::shared() {
  return *slot();
}

Registration use(const Services& services) {
  Module& module = Module::shared();
  module.services.emplace(services);
  return Registration([] {
    // What goes may look at the tables while it goes.
    const auto dropped = std::exchange(slot(), std::make_unique<Module>());
  });
}

bool isEnabled() {
  return Module::shared().isEnabled;
}

void setEnabled(bool enabled) {
  Module& module = Module::shared();
  if (module.isEnabled == enabled) return;
  module.isEnabled = enabled;
  if (module.services) HotKeyCenter::shared().setEnabled(enabled);
}

bool isEnabled(const Name& name) {
  const Module& module = Module::shared();
  if (!module.isEnabled || !hasActiveHandlers(name)) return false;
  const auto shortcut = getShortcut(name);
  return shortcut && module.hotKeys.contains(*shortcut);
}

void disable(const std::vector<Name>& names) {
  for (const Name& name : names) {
    Module::shared().disabledNames.insert(name);
    if (const auto shortcut = getShortcut(name)) releaseUnlessActive(*shortcut, &name);
  }
}

void enable(const std::vector<Name>& names) {
  for (const Name& name : names) {
    Module::shared().disabledNames.erase(name);
    registerIfNeeded(name);
  }
}

bool isPaused() {
  return Module::shared().isPaused;
}

void setPaused(bool paused) {
  Module::shared().isPaused = paused;
}

}  // namespace tarnwick::KeyboardShortcuts
