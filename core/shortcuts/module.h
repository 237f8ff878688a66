#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "core/shortcuts/hot_key_center.h"
#include "core/shortcuts/keyboard_shortcuts.h"

// The module's inside.
namespace tarnwick::KeyboardShortcuts {

using StreamId = std::uint64_t;
using StreamActions = std::map<StreamId, Action>;

// The actions for presses, or for releases.
struct Handlers {
  std::map<Name, std::vector<Action>> named;
  std::map<Name, StreamActions> streams;
  std::map<Shortcut, StreamActions> shortcutStreams;

  // Ordinary ones or streams.
  bool has(const Name& name) const;
};

// What a slot holds.
struct Disabled {  // the user wants none
  bool operator==(const Disabled&) const = default;
};
struct Missing {  // nothing, or nothing that can be read
  bool operator==(const Missing&) const = default;
};
using StoredShortcut = std::variant<Missing, Disabled, Shortcut>;

// The process-wide tables, of the thread that gave the module its services. Their use on another
// one is reported, and ends the process.
struct Module {
  static Module& shared();
  // For a look from any thread.
  static const Module& unchecked();

  std::optional<Services> services;
  bool isEnabled = true;
  bool isPaused = false;
  bool isInitialized = false;
  std::set<Name> disabledNames;
  Handlers keyDown;
  Handlers keyUp;
  std::unique_ptr<HotKeyCenter> center;
  std::unordered_map<Shortcut, std::shared_ptr<HotKey>> hotKeys;
  std::map<Name, StoredShortcut> slots;  // those that held something when last looked at
  Registration storeObserver;
  Registration layoutObserver;
};

StoredShortcut storedShortcut(const Name& name);

// Has the hot keys follow what the store holds from now on, whoever wrote it. One that could not be
// registered is tried again whenever the keyboard's map changes.
void observeStore();
void setInitialShortcutIfNeeded(const Shortcut& shortcut, const std::string& rawValue);

// Registers the name's shortcut when it has one, is not disabled and somebody handles it.
void registerIfNeeded(const Name& name);
void registerIfNeeded(const Shortcut& shortcut);
// Gives the shortcut's hot key back unless a name other than the excluded one, or a stream of the
// shortcut's own, still needs it.
void releaseUnlessActive(const Shortcut& shortcut, const Name* excluded = nullptr);
bool isShortcutActive(const Shortcut& shortcut, const Name* excluded = nullptr);
bool hasActiveHandlers(const Name& name);
void handleKeyEvent(EventType type, const Shortcut& shortcut);

}  // namespace tarnwick::KeyboardShortcuts
