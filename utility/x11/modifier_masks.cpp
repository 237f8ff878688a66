#include "utility/x11/modifier_masks.h"

#include <xcb/xcb.h>

#include <algorithm>

#include "common/x11/server.h"

namespace tarnwick::x11 {

namespace {

// Key symbols of X11.
constexpr xcb_keysym_t numLockKey = 0xff7f;
constexpr xcb_keysym_t scrollLockKey = 0xff14;
constexpr xcb_keysym_t altLeft = 0xffe9, altRight = 0xffea, metaLeft = 0xffe7;
constexpr xcb_keysym_t superLeft = 0xffeb, superRight = 0xffec;

constexpr std::uint16_t allModifiers = 0xff;  // above are buttons and the layout's number

}  // namespace

ModifierMasks ModifierMasks::present() {
  xcb_connection_t* const connection = server();
  if (!connection) return {};
  const auto* const setup = xcb_get_setup(connection);
  const auto mapping = xcb_get_keyboard_mapping(
      connection, setup->min_keycode,
      static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
  const auto modifierMapping = xcb_get_modifier_mapping(connection);
  const Reply<xcb_get_keyboard_mapping_reply_t> symbols(
      xcb_get_keyboard_mapping_reply(connection, mapping, nullptr));
  const Reply<xcb_get_modifier_mapping_reply_t> keys(
      xcb_get_modifier_mapping_reply(connection, modifierMapping, nullptr));
  if (!symbols || !keys) return {};

  const auto* const keysyms = xcb_get_keyboard_mapping_keysyms(symbols.get());
  const int perKey = symbols->keysyms_per_keycode;
  const int keysymCount = xcb_get_keyboard_mapping_keysyms_length(symbols.get());
  const auto* const keyCodes = xcb_get_modifier_mapping_keycodes(keys.get());
  // The first modifier that a key of the symbol holds.
  const auto maskOf = [&](std::initializer_list<xcb_keysym_t> wanted) {
    for (const auto symbol : wanted) {
      for (int i = 0; i < 8 * keys->keycodes_per_modifier; ++i) {
        const int first = (keyCodes[i] - setup->min_keycode) * perKey;
        if (keyCodes[i] == 0 || first < 0 || first + perKey > keysymCount) continue;
        if (std::find(keysyms + first, keysyms + first + perKey, symbol) ==
            keysyms + first + perKey) {
          continue;
        }
        return static_cast<std::uint16_t>(1U << (i / keys->keycodes_per_modifier));
      }
    }
    return std::uint16_t{0};
  };
  ModifierMasks masks;
  masks.alt = maskOf({altLeft, altRight, metaLeft});
  masks.super = maskOf({superLeft, superRight});
  masks.numLock = maskOf({numLockKey});
  masks.scrollLock = maskOf({scrollLockKey});
  return masks;
}

std::uint16_t ModifierMasks::ofShortcuts() const {
  return XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | alt | super;
}

std::optional<std::uint16_t> ModifierMasks::bits(KeyModifiers modifiers) const {
  const struct {
    KeyModifiers modifier;
    std::uint16_t bits;
  } pairs[] = {{KeyModifiers::shift, XCB_MOD_MASK_SHIFT},
               {KeyModifiers::control, XCB_MOD_MASK_CONTROL},
               {KeyModifiers::option, alt},
               {KeyModifiers::command, super},
               {KeyModifiers::function, 0}};  // never reaches the X server
  std::uint16_t all = 0;
  for (const auto& pair : pairs) {
    if (!contains(modifiers, pair.modifier)) continue;
    if (pair.bits == 0) return std::nullopt;
    all |= pair.bits;
  }
  return all;
}

KeyModifiers ModifierMasks::modifiers(std::uint16_t state) const {
  std::uint16_t rest = state & allModifiers & ~(numLock | scrollLock);
  auto modifiers = KeyModifiers::none;
  const auto take = [&](std::uint16_t bit, KeyModifiers modifier) {
    if ((rest & bit) == 0) return;
    rest &= static_cast<std::uint16_t>(~bit);
    modifiers = modifiers | modifier;
  };
  take(XCB_MOD_MASK_LOCK, KeyModifiers::capsLock);
  take(XCB_MOD_MASK_SHIFT, KeyModifiers::shift);
  take(XCB_MOD_MASK_CONTROL, KeyModifiers::control);
  take(alt, KeyModifiers::option);
  take(super, KeyModifiers::command);
  return rest == 0 ? modifiers : modifiers | KeyModifiers::unnamed;
}

std::vector<std::uint16_t> ModifierMasks::withLocks(std::uint16_t bits) const {
  std::vector<std::uint16_t> variants{bits};
  for (const std::uint16_t lock : {std::uint16_t{XCB_MOD_MASK_LOCK}, numLock, scrollLock}) {
    if (lock == 0 || (bits & lock) != 0) continue;
    for (std::size_t i = 0, count = variants.size(); i < count; ++i) {
      const auto variant = static_cast<std::uint16_t>(variants[i] | lock);
      if (std::find(variants.begin(), variants.end(), variant) == variants.end()) {
        variants.push_back(variant);
      }
    }
  }
  return variants;
}

}  // namespace tarnwick::x11
