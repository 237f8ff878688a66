#include <thread>

#include "tests/core/shortcuts_test.h"
#include "tests/core/temporary_folder.h"
#include "utility/session/defaults_file.h"

namespace tarnwick::test {
namespace {

using namespace KeyboardShortcuts;

class ShortcutStorageTest : public ShortcutsTest {
 protected:
  std::optional<DefaultsValue> stored(const std::string& rawValue) {
    return desktop.value("KeyboardShortcuts_" + rawValue);
  }
  void store(const std::string& rawValue, DefaultsValue value) {
    desktop.defaults["KeyboardShortcuts_" + rawValue] = std::move(value);
  }
  bool isRegistered(FakeKeyboard::Combination combination) const {
    return keyboard.registered.contains(combination);
  }

  const Name plain{"plain"};
  Registration observer =
      notifications.observe(shortcutByNameDidChange, [this](const Notification& notification) {
        log.push_back(std::any_cast<Name>(notification.userInfo.at("name")).rawValue());
      });
};

TEST_F(ShortcutStorageTest, ReadsThreeStatesAndTakesTheUnreadableAsMissing) {
  const struct {
    const char* name;
    DefaultsValue value;
    bool shortcut, disabled;
  } cases[] = {
      {"text", R"({"carbonKeyCode":40,"carbonModifiers":256})", true, false},
      {"false", false, false, true},
      {"true", true, false, false},
      {"bad text", R"({"carbonKeyCode":"x"})", false, false},
      {"bytes", DefaultsData{R"({"carbonKeyCode":40,"carbonModifiers":256})"}, false, false},
      {"number", std::int64_t{0}, false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    store("plain", c.value);
    EXPECT_EQ(plain.shortcut(), c.shortcut ? std::optional(k) : std::nullopt);
    // What cannot be read is not overwritten by a name's declaration either.
    const Name declared("plain", j);
    EXPECT_EQ(stored("plain"), c.value);
    // Only a slot that says so already is left as it is when it is cleared.
    setShortcut(std::nullopt, declared);
    EXPECT_EQ(noted().size(), c.disabled ? 0u : 1u);
    EXPECT_EQ(stored("plain"), DefaultsValue(false));
  }
}

TEST_F(ShortcutStorageTest, WritersAnnounceWhatTheyChanged) {
  setShortcut(k, plain);
  setShortcut(k, plain);
  EXPECT_EQ(noted().size(), 2u);
  EXPECT_EQ(plain.shortcut(), k);
  ASSERT_TRUE(std::holds_alternative<std::string>(*stored("plain")));
  setShortcut(std::nullopt, plain);
  EXPECT_FALSE(stored("plain"));
  setShortcut(std::nullopt, plain);
  reset({plain});
  EXPECT_EQ(noted().size(), 1u);
}

TEST_F(ShortcutStorageTest, InitialShortcutComesOnceAndStaysAwayWhenCleared) {
  const Name name("initial", k);
  EXPECT_EQ(getShortcut(name), k);
  desktop.loop.runPosted();
  EXPECT_TRUE(noted().empty());
  setShortcut(j, name);
  EXPECT_EQ(Name("initial", k).shortcut(), j);
  reset({name});
  EXPECT_EQ(getShortcut(name), k);
  name.setShortcut(std::nullopt);
  EXPECT_EQ(stored("initial"), DefaultsValue(false));
  EXPECT_FALSE(Name("initial", k).shortcut());
  noted();
  resetAll();
  EXPECT_FALSE(stored("initial")) << "names from the store have no initial shortcut";
  EXPECT_EQ(noted(), std::vector<std::string>{"initial"});
  EXPECT_EQ(Name("initial", k).shortcut(), k);
}

TEST_F(ShortcutStorageTest, ResetAllTakesNamesThatNobodyDeclares) {
  store("old", R"({"carbonKeyCode":1,"carbonModifiers":256})");
  store("older", false);
  desktop.defaults["panelColumns"] = std::int64_t{3};
  EXPECT_EQ(storedNames(), (std::set{Name::fromRawValue("old"), Name::fromRawValue("older")}));
  resetAll();
  EXPECT_EQ(desktop.keys(), std::vector<std::string>{"panelColumns"});
  EXPECT_EQ(noted(), (std::vector<std::string>{"old", "older"}));
}

TEST_F(ShortcutStorageTest, HotKeysFollowTheStore) {
  const Name other("other");
  onKeyUp(plain, [] {});
  onKeyUp(other, [] {});
  EXPECT_TRUE(keyboard.registered.empty());
  setShortcut(k, plain);
  setShortcut(k, other);
  EXPECT_EQ(keyboard.registrations.size(), 1u) << "one serves both";
  setShortcut(j, plain);
  EXPECT_TRUE(isRegistered(commandK)) << "the other needs it";
  setShortcut(std::nullopt, other);
  EXPECT_FALSE(isRegistered(commandK));
  EXPECT_TRUE(isRegistered(commandJ));
  EXPECT_TRUE(isEnabled(plain));
  EXPECT_FALSE(isEnabled(other));
  EXPECT_FALSE(isEnabled(Name("third")));

  disable({plain, other});
  EXPECT_TRUE(keyboard.registered.empty());
  setShortcut(k, plain);
  EXPECT_TRUE(keyboard.registered.empty());
  enable({plain, other});
  EXPECT_TRUE(isRegistered(commandK));
  resetAll();
  EXPECT_TRUE(keyboard.registered.empty());
}

TEST_F(ShortcutStorageTest, CombinationOfAnotherProgramWorksOnceItIsFreeAndAskedForAgain) {
  keyboard.takenByOthers = {commandK};
  onKeyUp(plain, note("up"));
  setShortcut(k, plain);
  EXPECT_FALSE(isEnabled(plain));
  keyboard.takenByOthers.clear();
  EXPECT_FALSE(isEnabled(plain));
  enable({plain});
  EXPECT_TRUE(isEnabled(plain));
  keyboard.notInForce = {keyboard.registered.at(commandK)};  // lost as the keyboard changed
  EXPECT_FALSE(isEnabled(plain));
  keyboard.notInForce.clear();
  EXPECT_TRUE(isEnabled(plain));
  noted();
  strike(commandK);
  EXPECT_EQ(noted(), std::vector<std::string>{"up"});
}

TEST_F(ShortcutStorageTest, HotKeysFollowWhateverHandWroteTheStore) {
  const std::string kText = k.toJson(), jText = j.toJson();
  const struct {
    const char* label;
    std::optional<DefaultsValue> plain, other;
    bool k, j;
    std::size_t told;
  } cases[] = {
      {"a shortcut", kText, {}, true, false, 1},
      {"the same", kText, {}, true, false, 0},
      {"another", jText, kText, true, true, 2},
      {"what the other keeps", kText, kText, true, false, 1},
      {"cleared", false, kText, true, false, 1},
      {"unreadable", true, {}, false, false, 2},
      {"removed", {}, {}, false, false, 0},
  };
  const Name other("other");
  onKeyUp(plain, [] {});
  onKeyUp(other, [] {});
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    desktop.defaults.clear();
    if (c.plain) store("plain", *c.plain);
    if (c.other) store("other", *c.other);
    desktop.tellOfDefaults();
    desktop.loop.runPosted();
    EXPECT_EQ(isRegistered(commandK), c.k);
    EXPECT_EQ(isRegistered(commandJ), c.j);
    EXPECT_EQ(noted().size(), c.told);
  }
  setShortcut(k, plain);
  desktop.loop.runPosted();
  EXPECT_EQ(noted().size(), 1u) << "own writes are told once";
}

TEST_F(ShortcutStorageTest, WhatCannotBeReadIsNotMissing) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "defaults.json";
  writeFile(path, R"({"KeyboardShortcuts_plain": 1.5, "KeyboardShortcuts_null": null})");
  desktop::DefaultsFile file(path);
  module = {};
  module = use({desktop.loop, file, keyboard, keyboard, notifications});
  const Name null = Name::fromRawValue("null");
  EXPECT_EQ(storedNames(), (std::set{null, plain}));
  EXPECT_FALSE(Name("plain", k).shortcut());
  EXPECT_FALSE(file.value("KeyboardShortcuts_plain"));
  setShortcut(std::nullopt, plain);
  EXPECT_EQ(storedNames(), std::set{null});
  resetAll();
  EXPECT_EQ(noted(), (std::vector<std::string>{"plain", "null"}));
  EXPECT_TRUE(file.keys().empty());
  writeFile(path, R"({"KeyboardShortcuts_plain": 1.5})");
  setShortcut(k, plain);
  resetAll();
  EXPECT_EQ(noted(), (std::vector<std::string>{"plain", "plain"}));
  EXPECT_EQ(file.keys().size(), 1u) << "a copy of what could not be read stays";
}

TEST_F(ShortcutStorageTest, OtherThreadsAreReported) {
  desktop.loop.runPosted();
  const struct {
    const char* label;
    std::function<void()> call;
    bool reported = true;
  } cases[] = {
      {"list", [] { storedNames(); }},
      {"read", [this] { getShortcut(plain); }},
      {"write", [this] { setShortcut(k, plain); }},
      {"handler", [this] { onKeyUp(plain, [] {}); }},
      {"stream", [this] { const auto stream = events(k); }},
      {"switch", [] { setEnabled(false); }},
      {"pause", [] { setPaused(true); }},
      {"text", [this] { const auto text = k.description(); }},
      {"menu key", [this] { const auto key = k.nsMenuItemKeyEquivalent(); }},
      {"declaration", [] { const Name name("any"); }, false},
      {"value", [this] { EXPECT_EQ(Shortcut::fromJson(k.toJson()), k); }, false},
  };
  for (const auto& c : cases) {
    const auto elsewhere = [&] { std::thread(c.call).join(); };
    SCOPED_TRACE(c.label);
    if (!c.reported) {
      elsewhere();
    } else {
      EXPECT_DEATH(elsewhere(), "outside of the main thread");
    }
  }
}

// Numbers that no key has may stand in the store.
TEST_F(ShortcutStorageTest, ImpossibleKeysAreNotRegistered) {
  for (const char* text : {R"({"carbonKeyCode":-1,"carbonModifiers":256})",
                           R"({"carbonKeyCode":40,"carbonModifiers":4294967296})"}) {
    store("plain", text);
    onKeyUp(plain, [] {});
    EXPECT_FALSE(isEnabled(plain));
  }
  EXPECT_TRUE(keyboard.registrations.empty());
}

}  // namespace
}  // namespace tarnwick::test
