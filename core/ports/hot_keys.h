#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "common/base/registration.h"
#include "core/ports/key_event.h"

namespace tarnwick {

// Tells a hot key from others. The signature says whose it is; ids are the owner's own.
struct HotKeyId {
  std::uint32_t signature = 0;
  std::uint32_t id = 0;
  auto operator<=>(const HotKeyId&) const = default;
};

struct HotKeyEvent {
  HotKeyId hotKey;
  bool pressed = false;  // else released
};

// Key combinations that reach this process whatever has the keyboard focus.
class HotKeys {
 public:
  virtual ~HotKeys() = default;

  // Takes a key with exactly these modifiers (the code as in InputEvent) from
  // everybody else, until the registration is dropped. Empty when another program has it or no
  // keyboard can type it. While the present keyboard has no key for one of the modifiers, or
  // another program took the combination as the keyboard changed, it is registered without being in
  // force, and tried again when the keyboard changes. Asks the display server and waits for its
  // answer.
  virtual Registration registerEventHotKey(std::uint32_t keyCode, KeyModifiers modifiers,
                                           HotKeyId id) = 0;
  // Whether presses of a registered hot key are told now.
  virtual bool isInForce(HotKeyId id) const = 0;

  // Calls for every press of a registered hot key and for the release of its key that follows, in
  // whatever order key and modifiers go up. A held key is pressed once.
  virtual Registration watchHotKeys(std::function<void(const HotKeyEvent&)> callback) = 0;

  // Calls for every key event on its way to an open menu of this process, in the order typed; true
  // swallows it. The release of a key that was swallowed bears the modifiers of its press.
  virtual Registration watchMenuKeys(std::function<bool(const InputEvent&)> callback) = 0;
};

}  // namespace tarnwick
