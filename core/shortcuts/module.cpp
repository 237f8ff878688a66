#include "core/shortcuts/module.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

namespace tarnwick::KeyboardShortcuts {

namespace {

std::unique_ptr<Module>& slot() {
  static auto module = std::make_unique<Module>();
  return module;
}

std::thread::id mainThread;  // once the module is used

}  // namespace

Module& Module::shared() {
  if (mainThread != std::thread::id() && mainThread != std::this_thread::get_id()) {
    std::fputs("KeyboardShortcuts was called outside of the main thread\n", stderr);
    std::abort();
  }
  return *slot();
}

const Module& Module::unchecked() {
  return *slot();
}

Registration use(const Services& services) {
  mainThread = std::this_thread::get_id();
  Module& module = Module::shared();
  module.services.emplace(services);
  observeStore();
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
  if (!shortcut) return false;
  const auto hotKey = module.hotKeys.find(*shortcut);
  return hotKey != module.hotKeys.end() && HotKeyCenter::shared().isInForce(*hotKey->second);
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
