#include "core/shortcuts/special_key.h"

#include <unordered_map>

#include "core/shortcuts/character.h"
#include "core/shortcuts/localized.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

using K = SpecialKey;

struct Row {
  Key key;
  SpecialKey special;
  const char* description;
  const char* menuCharacter;
};

// In the order of SpecialKey.
constexpr Row rows[] = {
    {Key::return_, K::return_, "\u21A9", "\u21A9"},
    {Key::delete_, K::delete_, "\u232B", "\u232B"},
    {Key::deleteForward, K::deleteForward, "\u2326", "\u2326"},
    {Key::end, K::end, "\u2198", "\u2198"},
    {Key::escape, K::escape, "\u238B", "\u238B"},
    {Key::help, K::help, "?\u20DD", "?\u20DD"},
    {Key::home, K::home, "\u2196", "\u2196"},
    {Key::space, K::space, nullptr, " "},  // its name is a text of its own
    {Key::tab, K::tab, "\u21E5", "\u21E5"},
    {Key::pageUp, K::pageUp, "\u21DE", "\u21DE"},
    {Key::pageDown, K::pageDown, "\u21DF", "\u21DF"},
    {Key::upArrow, K::upArrow, "\u2191", "\u2191"},
    {Key::rightArrow, K::rightArrow, "\u2192", "\u2192"},
    {Key::downArrow, K::downArrow, "\u2193", "\u2193"},
    {Key::leftArrow, K::leftArrow, "\u2190", "\u2190"},
    {Key::f1, K::f1, "F1", "\uF704"},
    {Key::f2, K::f2, "F2", "\uF705"},
    {Key::f3, K::f3, "F3", "\uF706"},
    {Key::f4, K::f4, "F4", "\uF707"},
    {Key::f5, K::f5, "F5", "\uF708"},
    {Key::f6, K::f6, "F6", "\uF709"},
    {Key::f7, K::f7, "F7", "\uF70A"},
    {Key::f8, K::f8, "F8", "\uF70B"},
    {Key::f9, K::f9, "F9", "\uF70C"},
    {Key::f10, K::f10, "F10", "\uF70D"},
    {Key::f11, K::f11, "F11", "\uF70E"},
    {Key::f12, K::f12, "F12", "\uF70F"},
    {Key::f13, K::f13, "F13", "\uF710"},
    {Key::f14, K::f14, "F14", "\uF711"},
    {Key::f15, K::f15, "F15", "\uF712"},
    {Key::f16, K::f16, "F16", "\uF713"},
    {Key::f17, K::f17, "F17", "\uF714"},
    {Key::f18, K::f18, "F18", "\uF715"},
    {Key::f19, K::f19, "F19", "\uF716"},
    {Key::f20, K::f20, "F20", "\uF717"},
    {Key::keypad0, K::keypad0, "0\u20E3", nullptr},
    {Key::keypad1, K::keypad1, "1\u20E3", nullptr},
    {Key::keypad2, K::keypad2, "2\u20E3", nullptr},
    {Key::keypad3, K::keypad3, "3\u20E3", nullptr},
    {Key::keypad4, K::keypad4, "4\u20E3", nullptr},
    {Key::keypad5, K::keypad5, "5\u20E3", nullptr},
    {Key::keypad6, K::keypad6, "6\u20E3", nullptr},
    {Key::keypad7, K::keypad7, "7\u20E3", nullptr},
    {Key::keypad8, K::keypad8, "8\u20E3", nullptr},
    {Key::keypad9, K::keypad9, "9\u20E3", nullptr},
    {Key::keypadClear, K::keypadClear, "\u2612\u20E3", nullptr},
    {Key::keypadDecimal, K::keypadDecimal, ".\u20E3", nullptr},
    {Key::keypadDivide, K::keypadDivide, "/\u20E3", nullptr},
    {Key::keypadEnter, K::keypadEnter, "\u21A9\u20E3", nullptr},
    {Key::keypadEquals, K::keypadEquals, "=\u20E3", nullptr},
    {Key::keypadMinus, K::keypadMinus, "-\u20E3", nullptr},
    {Key::keypadMultiply, K::keypadMultiply, "*\u20E3", nullptr},
    {Key::keypadPlus, K::keypadPlus, "+\u20E3", nullptr},
};

const Row& row(SpecialKey key) {
  return rows[static_cast<std::size_t>(key)];
}

}  // namespace

std::optional<SpecialKey> specialKey(Key key) {
  static const auto keyToSpecialKeyMapping = [] {
    std::unordered_map<Key, SpecialKey> mapping;
    for (const Row& each : rows) mapping.emplace(each.key, each.special);
    return mapping;
  }();
  const auto found = keyToSpecialKeyMapping.find(key);
  if (found == keyToSpecialKeyMapping.end()) return std::nullopt;
  return found->second;
}

std::string presentableDescription(SpecialKey key) {
  return key == K::space ? capitalised(localized("space_key")) : row(key).description;
}

std::optional<std::string> appKitMenuItemKeyEquivalent(SpecialKey key) {
  const char* const text = row(key).menuCharacter;
  return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

}  // namespace tarnwick::KeyboardShortcuts
