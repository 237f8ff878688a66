#pragma once

#include <functional>
#include <set>
#include <variant>
#include <vector>

#include "common/base/registration.h"
#include "core/ports/defaults_store.h"
#include "core/ports/hot_keys.h"
#include "core/ports/keyboard_layout.h"
#include "core/ports/main_loop.h"
#include "core/ports/notification_center.h"
#include "core/ports/system_shortcuts.h"
#include "core/shortcuts/event_stream.h"
#include "core/shortcuts/name.h"
#include "core/shortcuts/shortcut.h"

// Shortcuts that work whatever has the keyboard focus: named slots whose keys the user chooses,
// kept in the settings store, and actions for them. One for the whole process; main thread only: a
// call on another thread ends the process with a message, save the declaration of a name that
// brings no initial shortcut, once the first one was declared.
namespace tarnwick::KeyboardShortcuts {

// What the module is built on; outlives its use.
struct Services {
  MainLoop& loop;
  DefaultsStore& defaults;
  HotKeys& hotKeys;
  KeyboardLayout& layout;
  NotificationCenter& notifications;
  SystemShortcuts* systemShortcuts = nullptr;  // may be unknown
  // The user's language for one of the module's English texts; may be empty.
  std::function<std::string(const char* text)> translated = {};
};

// Gives the module its services, before anything else of it is used. Dropping the registration
// takes every hot key, handler and stream away and leaves the module as it was at first.
Registration use(const Services& services);

// Posted with {"name": Name} after a slot was written or removed, by whatever hand.
inline constexpr const char* shortcutByNameDidChange = "KeyboardShortcuts_shortcutByNameDidChange";

// Slots. Each change takes effect on the hot keys at once, also one that the user has written into
// the store by hand. That may be any combination: a bare letter, which no recorder takes, is stored
// and taken as it stands.

// Absent when none is stored, what is stored cannot be read, or the user wants none.
std::optional<Shortcut> getShortcut(const Name& name);
// Absent clears the slot; one with an initial shortcut is marked so that it stays clear.
void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name);
// Back to the initial shortcuts, or to none.
void reset(const std::vector<Name>& names);
// Removes every stored slot, also those that nobody declares any more. Initial shortcuts come back
// when their names are next declared.
void resetAll();
// Every name with something stored.
std::set<Name> storedNames();

// The whole module on or off; on at first.
bool isEnabled();
void setEnabled(bool enabled);
// Whether a press of the name's shortcut would be noticed: the name has handlers and its shortcut a
// hot key, which the desktop has been able to take.
bool isEnabled(const Name& name);
void disable(const std::vector<Name>& names);
void enable(const std::vector<Name>& names);

// While paused, hot keys stay taken but nothing is called.
bool isPaused();
void setPaused(bool paused);

// Actions, run in the order they were added, inside the event.

using Action = std::function<void()>;

void onKeyDown(const Name& name, Action action);
void onKeyUp(const Name& name, Action action);
// Streams are left alone.
void removeHandler(const Name& name);
void removeAllHandlers();

// Streams for coroutines, in effect until they are dropped.

enum class EventType : std::uint8_t { keyDown, keyUp };

EventStream<EventType> events(const Name& name);
EventStream<EventType> events(EventType type, const Name& name);
EventStream<EventType> events(const Shortcut& shortcut);
EventStream<EventType> events(EventType type, const Shortcut& shortcut);

// One value at the press, and while the key is held more at the keyboard's own pace. Of values that
// nobody has taken only the newest is kept.
EventStream<std::monostate> repeatingKeyDownEvents(const Name& name);
EventStream<std::monostate> repeatingKeyDownEvents(const Shortcut& shortcut);

}  // namespace tarnwick::KeyboardShortcuts
