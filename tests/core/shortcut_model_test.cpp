#include <gtest/gtest.h>

#include "core/shortcuts/character.h"
#include "core/shortcuts/special_key.h"
#include "tests/core/shortcuts_test.h"

namespace tarnwick::test {
namespace {

using KeyboardShortcuts::capitalised;
using KeyboardShortcuts::character;
using KeyboardShortcuts::lowerCased;
using enum KeyModifiers;

constexpr auto all = control | option | shift | command;

class ShortcutModelTest : public ShortcutsTest {};

TEST_F(ShortcutModelTest, KeepsTheKnownModifiersOnly) {
  EXPECT_EQ(Shortcut(Key::k, all | capsLock | numericPad).carbonModifiers(), 6912);
  EXPECT_EQ(Shortcut(Key::k, function | control).carbonModifiers(), 0x21000);
  EXPECT_EQ(Shortcut(40, 0xFFFF).carbonModifiers(), 0x1B00);
  EXPECT_EQ(Shortcut(40, 0x21000).modifiers(), function | control);
}

TEST_F(ShortcutModelTest, ComesFromKeyEventsWithoutTheirFunctionFlag) {
  const Shortcut f5(Key::f5, command);
  EXPECT_EQ(Shortcut::of(InputEvent{EventKind::keyDown, 96, function | command, false}), f5);
  EXPECT_EQ(Shortcut::of(InputEvent{EventKind::keyUp, 96, command | capsLock, true}), f5);
  EXPECT_FALSE(Shortcut::of(InputEvent{EventKind::leftMouseDown, 96, command, false}));
}

TEST_F(ShortcutModelTest, IsStoredAsJson) {
  const auto read = Shortcut::fromJson(Shortcut(Key::k, control | command).toJson());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->carbonKeyCode(), 40);
  EXPECT_EQ(read->carbonModifiers(), 4352);
  const struct {
    const char* text;
    std::optional<std::int64_t> modifiers;
  } cases[] = {
      {R"({"carbonModifiers":256,"carbonKeyCode":40})", 256},
      {R"({"carbonKeyCode":40,"carbonModifiers":99999})", 99999},
      {R"({"carbonKeyCode":40.0,"carbonModifiers":2.56e2,"more":[]})", 256},
      {R"({"carbonKeyCode":-1,"carbonModifiers":-9223372036854775808})", INT64_MIN},
      {R"({"carbonKeyCode":40})", {}},
      {R"({"carbonKeyCode":"x"})", {}},
      {R"({"carbonKeyCode":40,"carbonModifiers":true})", {}},
      {R"({"carbonKeyCode":40,"carbonModifiers":0.5})", {}},
      {R"({"carbonKeyCode":40,"carbonModifiers":1e300})", {}},
      {R"({"carbonKeyCode":40,"carbonModifiers":9223372036854775808})", {}},
      {R"([40,256])", {}},
      {R"({"carbonKeyCode":40,)", {}},
      {"", {}},
  };
  for (const auto& c : cases) {
    const auto shortcut = Shortcut::fromJson(c.text);
    EXPECT_EQ(shortcut.has_value(), c.modifiers.has_value()) << c.text;
    if (shortcut && c.modifiers) {
      EXPECT_EQ(shortcut->carbonModifiers(), *c.modifiers) << c.text;
    }
  }
}

TEST_F(ShortcutModelTest, ReadsForPeopleAndForMenus) {
  keyboard.prints = {{40, U'k'}, {41, 0xF6}, {27, 0xDF}, {74, U'x'}, {47, 0x323}};
  keyboard.names = {{72, "Volume Up"}, {363, "Print"}};
  const struct {
    Shortcut shortcut;
    const char* description;
    std::optional<std::string> menu;
  } cases[] = {
      {Shortcut(Key::k, all), "⌃⌥⇧⌘K", "k"},
      {Shortcut(Key::k, function), "\U0001F310\uFE0EK", "k"},
      {Shortcut(Key::semicolon, command), "⌘Ö", "ö"},
      {Shortcut(Key::minus, command), "⌘Ss", "ß"},
      {Shortcut(Key::mute), "X", "x"},  // has a name, but is not special
      {Shortcut(Key::period, command), "⌘\u25CC\u0323", "\u0323"},
      {Shortcut(Key::volumeUp, control), "⌃Volume Up", {}},
      {Shortcut(Key(363), control), "⌃Print", {}},
      {Shortcut(Key::a, command), "⌘\uFFFD", {}},
      {Shortcut(Key(70000), command), "⌘\uFFFD", {}},
      {Shortcut(Key(-1), command), "⌘\uFFFD", {}},
      {Shortcut(Key::f5), "F5", "\uF708"},
      {Shortcut(Key::f1), "F1", "\uF704"},
      {Shortcut(Key::f20), "F20", "\uF717"},
      {Shortcut(Key::space, option), "⌥Space", " "},
      {Shortcut(Key::help), "?\u20DD", "?\u20DD"},
      {Shortcut(Key::return_, command), "⌘↩", "↩"},
      {Shortcut(Key::keypad5, command), "⌘5\u20E3", {}},
      {Shortcut(Key::keypadClear), "☒\u20E3", {}},
      {Shortcut(Key::keypadEnter), "↩\u20E3", {}},
      {Shortcut(Key::keypadPlus), "+\u20E3", {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.shortcut.description(), c.description);
    EXPECT_EQ(c.shortcut.nsMenuItemKeyEquivalent(), c.menu) << c.description;
  }
  module = {};
  module = KeyboardShortcuts::use({desktop.loop, desktop, keyboard, keyboard, notifications,
                                   nullptr, [](const char*) { return "élan"; }});
  EXPECT_EQ(Shortcut(Key::space).description(), "Élan") << "whatever its translation";
  module.reset();
  EXPECT_EQ(Shortcut(Key::k).description(), "\uFFFD") << "there is no layout";
}

TEST_F(ShortcutModelTest, FiftyThreeKeysAreSpecial) {
  std::set<std::string> descriptions;
  for (int code = 0; code < 128; ++code) {
    if (const auto special = KeyboardShortcuts::specialKey(Key(code))) {
      descriptions.insert(presentableDescription(*special));
    }
  }
  EXPECT_EQ(descriptions.size(), 53u);
}

TEST(CharacterTest, CoversScalarValuesOnly) {
  EXPECT_EQ(character(0x41), "A");
  EXPECT_EQ(character(0xDF), "ß");
  EXPECT_EQ(character(0x20E3), "\u20E3");
  EXPECT_EQ(character(0x10FFFF), "\U0010FFFF");
  for (const std::int64_t none : {-1L, 0xD800L, 0xDFFFL, 0x110000L, 0x100000041L}) {
    EXPECT_FALSE(character(none)) << none;
  }
}

// The last ones: Georgian, which has no capitals in titles, digraphs, and letters that Unicode has
// apart from their alphabets.
TEST(CharacterTest, KnowsCapitalAndSmallLetters) {
  const std::u32string lower =
      U"azäÿµıςąžğőőșțωάύώяёєґӷӏᲀպ1,×÷€ºაǆǅəɐꭰⴀᾳſ𐐨";
  const std::u32string upper = U"AZÄŸΜIΣĄŽĞŐŐȘȚΩΆΎΏЯЁЄҐӶӀВՊ1,×÷€ºაǅǅƏⱯᎠႠᾼS𐐀";
  const std::u32string again =
      U"azäÿμiσąžğőőșțωάύώяёєґӷӏвպ1,×÷€ºაǆǆəɐꭰⴀᾳs𐐨";
  ASSERT_EQ(lower.size(), upper.size());
  for (std::size_t i = 0; i < lower.size(); ++i) {
    EXPECT_EQ(capitalised(lower[i]), character(upper[i])) << i;
    EXPECT_EQ(capitalised(upper[i]), character(upper[i])) << i;
    EXPECT_EQ(lowerCased(*character(upper[i])), character(again[i])) << i;
  }
  const struct {
    const char* text;
    const char* small;
  } capitals[] = {{"İ", "i"},   {"ẞ", "ß"}, {"Ა", "ა"},          {"Ǆ", "ǆ"},
                  {"AB", "AB"}, {"", ""},   {"Ä\u0308", "Ä\u0308"}};
  for (const auto& c : capitals) EXPECT_EQ(lowerCased(c.text), c.small);
}

}  // namespace
}  // namespace tarnwick::test
