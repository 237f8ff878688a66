#include "core/shortcuts/recorder.h"

#include "tests/core/shortcuts_test.h"

namespace tarnwick::test {
namespace {

using namespace KeyboardShortcuts;
using M = KeyModifiers;

// A field and a desktop that note what they are asked.
class RecorderTest : public ShortcutsTest, protected RecorderField, protected SystemShortcuts {
 protected:
  void show(const RecorderAppearance& shown) override { appearance = shown; }
  void makeFirstResponder() override { recorder.becomeFirstResponder(); }
  void resignFirstResponder() override { recorder.endRecording(); }
  void beep() override { log.push_back("beep"); }
  Registration present(const Alert& alert, std::function<void(int)> callback) override {
    log.push_back("alert " + std::to_string(alert.buttons.size()) + ": " + alert.title);
    answer = std::move(callback);
    return {};
  }
  KeyedMenu mainMenu() override { return menu; }
  std::vector<TakenShortcut> taken() override { return system; }

  bool press(std::uint16_t key, KeyModifiers modifiers = M::none) {
    return recorder.keyDown(InputEvent{EventKind::keyDown, key, modifiers, false});
  }

  KeyedMenu menu;
  std::vector<TakenShortcut> system;
  std::function<void(int)> answer;
  RecorderAppearance appearance;
  Registration renew = [this] {
    module = {};
    return KeyboardShortcuts::use({desktop.loop, desktop, keyboard, keyboard, notifications, this});
  }();
  Name name{"slot"};
  RecorderCocoa recorder{*this, name};
};

TEST_F(RecorderTest, TakesRefusesAndPassesOnKeys) {
  constexpr std::uint16_t pauseKey = 383;  // beyond the ANSI layout
  keyboard.names = {{pauseKey, "Pause"}};
  struct Case {
    std::uint16_t key;
    KeyModifiers modifiers;
    bool swallowed, beeps, goesOn;
    const char* text;
  };
  const Case cases[] = {
      {40, M::none, true, true, true, "⌘K"},
      {40, M::shift, true, true, true, "⌘K"},
      {126, M::none, true, true, true, "⌘K"},
      {36, M::capsLock, true, true, true, "⌘K"},
      {96, M::none, true, false, false, "F5"},
      {96, M::shift | M::capsLock, true, false, false, "⇧F5"},
      {40, M::option | M::command, true, false, false, "⌥⌘K"},
      {48, M::none, false, false, false, "⌘K"},
      {53, M::capsLock, true, false, false, "⌘K"},
      {53, M::control, true, false, false, "⌃⎋"},
      {53, M::unnamed, true, true, true, "⌘K"},  // AltGr is a modifier
      {48, M::unnamed, true, true, true, "⌘K"},
      {40, M::control | M::unnamed, true, true, true, "⌘K"},
      {pauseKey, M::shift, true, true, true, "⌘K"},
      {pauseKey, M::control, true, false, false, "⌃Pause"},
      {51, M::none, true, false, true, ""},
      {117, M::numericPad, true, false, true, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.key) + " " + c.text);
    name.setShortcut(k);
    recorder.becomeFirstResponder();
    EXPECT_TRUE(isPaused());
    EXPECT_EQ(press(c.key, c.modifiers), c.swallowed);
    EXPECT_EQ(noted().size(), c.beeps ? 1U : 0U);
    EXPECT_EQ(recorder.isRecording(), c.goesOn);
    EXPECT_EQ(isPaused(), c.goesOn);
    EXPECT_EQ(appearance.text, c.text);
    EXPECT_EQ(appearance.hasCancelButton, *c.text != 0);
    EXPECT_EQ(appearance.placeholder, c.goesOn ? "Press Shortcut" : "Record Shortcut");
    recorder.endRecording();
  }
}

TEST_F(RecorderTest, ChecksInOrderAndStoresWhatIsForced) {
  menu = {{"File", "", M::none, {}, {{"Kill", "K", M::command, {}, {}}}}};
  system = {{40, 0x300}, {38, 0x100}, {111, 0}};
  recorder.validateShortcut = [](const Shortcut& candidate) {
    return candidate.key() == Key::j ? ValidationResult::disallow("No.")
                                     : ValidationResult::allow();
  };
  recorder.becomeFirstResponder();
  press(40, M::command | M::shift);
  EXPECT_NE(noted().at(0).find("alert 0: This shortcut cannot be used"), std::string::npos);
  EXPECT_FALSE(isPaused());
  answer(alertSecondButton);
  EXPECT_TRUE(recorder.isRecording());
  EXPECT_FALSE(name.shortcut());

  menu.front().submenu.front().boundName = "other";
  recorder.conflictPolicy.menuItem = ConflictBehavior::allow;
  press(40, M::command | M::shift);
  EXPECT_EQ(noted().at(0), "alert 2: This shortcut is already used by the system.");
  answer(alertFirstButton);
  EXPECT_FALSE(name.shortcut());
  press(40, M::command | M::shift);
  answer(alertSecondButton);
  EXPECT_EQ(appearance.text, "⇧⌘K");
  EXPECT_FALSE(recorder.isRecording());
  noted();

  recorder.becomeFirstResponder();
  press(38, M::command);
  answer(alertSecondButton);
  EXPECT_EQ(noted().at(1), "alert 0: No.");
  answer(alertFirstButton);
  press(111);
  EXPECT_EQ(appearance.text, "F12");

  recorder.operatingSystem = {15, 1, true};
  recorder.conflictPolicy.disallowed = ConflictBehavior::warn;
  recorder.becomeFirstResponder();
  press(40, M::option | M::shift);
  EXPECT_EQ(noted().size(), 1U);
  EXPECT_EQ(appearance.text, "F12");
}

TEST_F(RecorderTest, FollowsWhatAnotherOneRecordsForTheSameName) {
  struct OtherField : RecorderField {
    void show(const RecorderAppearance& shown) override { appearance = shown; }
    void makeFirstResponder() override {}
    void resignFirstResponder() override {}
    void beep() override {}
    Registration present(const Alert&, std::function<void(int)>) override { return {}; }
    KeyedMenu mainMenu() override { return {}; }
    RecorderAppearance appearance;
  } sameField, foreignField;
  RecorderCocoa same{sameField, name};
  const RecorderCocoa foreign{foreignField, Name{"other"}};
  recorder.becomeFirstResponder();
  press(40, M::command);
  EXPECT_EQ(sameField.appearance.text, "⌘K");
  EXPECT_TRUE(sameField.appearance.hasCancelButton);
  EXPECT_EQ(foreignField.appearance.text, "");

  const Name other("other");
  other.setShortcut(Shortcut(Key::f5));
  same.setShortcutName(other);
  EXPECT_EQ(sameField.appearance.text, "F5");
  same.setShortcutName(name);

  recorder.becomeFirstResponder();
  same.setShortcut(std::nullopt);
  EXPECT_EQ(appearance.text, "");
  EXPECT_EQ(appearance.placeholder, "Press Shortcut");
  EXPECT_FALSE(sameField.appearance.isRecording);
  press(40, M::control);
  EXPECT_EQ(sameField.appearance.text, "⌃K");
  keyboard.prints = {{40, U'l'}};
  keyboard.layoutChanges.notify();
  EXPECT_EQ(sameField.appearance.text, "⌃L");
}

TEST_F(RecorderTest, MayBeTakenAwayByWhoIsTold) {
  for (const bool clears : {false, true}) {
    name.setShortcut(k);
    RecorderField& field = *this;
    std::optional<RecorderCocoa> told;
    std::optional<Shortcut> last = j;
    told.emplace(field, name, [&](const std::optional<Shortcut>& now) {
      last = now;
      told.reset();
    });
    told->becomeFirstResponder();
    told->keyDown(InputEvent{EventKind::keyDown, clears ? std::uint16_t{51} : std::uint16_t{96},
                             M::none, false});
    EXPECT_EQ(last, clears ? std::nullopt : std::optional(Shortcut(Key::f5)));
    EXPECT_FALSE(isPaused());
  }
}

TEST_F(RecorderTest, AnItemThatShowsItsOwnShortcutIsNoConflict) {
  const struct {
    const char* boundName;
    std::uint16_t before;
    bool conflicts;
  } cases[] = {{"slot", 40, false}, {"slot", 38, true}, {"other", 40, true}};
  for (const auto& c : cases) {
    menu = {{"Kill", "k", M::command, c.boundName, {}}};
    name.setShortcut(Shortcut(Key(c.before), M::command));
    recorder.becomeFirstResponder();
    press(40, M::command);
    EXPECT_EQ(!noted().empty(), c.conflicts) << c.boundName << c.before;
    recorder.endRecording();
  }
}

TEST_F(RecorderTest, AClickWellOutsideEndsIt) {
  std::vector<bool> told;
  const Registration observer = notifications.observe(
      recorderActiveStatusDidChange,
      [&](const Notification& change) { told.push_back(recorderIsActive(change)); });
  for (const Point inside : {Point{-3, -3}, Point{133, 27}}) {
    recorder.becomeFirstResponder();
    recorder.mouseUp(inside, {130, 24});
    EXPECT_TRUE(recorder.isRecording());
  }
  for (const Point outside : {Point{133.5, 10}, {-3.5, 10}, {10, -3.5}, {10, 27.5}}) {
    told.clear();
    recorder.endRecording();
    recorder.becomeFirstResponder();
    recorder.mouseUp(outside, {130, 24});
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(told.back());
  }
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
  EXPECT_FALSE(press(40, M::command)) << "what is typed then is not its business";
  EXPECT_FALSE(name.shortcut());
}

TEST_F(RecorderTest, KeepsAShortcutThatNoNameHas) {
  std::optional<Shortcut> kept;
  std::vector<std::optional<Shortcut>> told;
  RecorderField& field = *this;
  RecorderCocoa bound(
      field,
      KeyboardShortcuts::Binding{[&] { return kept; }, [&](const auto& value) { kept = value; }},
      [&](const auto& value) { told.push_back(value); });
  bound.setShortcut(j);
  EXPECT_EQ(appearance.text, "⌘\uFFFD");
  EXPECT_FALSE(bound.shortcutName());
  bound.becomeFirstResponder();
  EXPECT_TRUE(bound.keyDown(std::nullopt));
  EXPECT_EQ(noted(), std::vector<std::string>{"beep"});
  bound.keyDown(InputEvent{EventKind::keyDown, 40, M::command, false});
  EXPECT_EQ(kept, k);
  bound.clear();
  bound.clear();
  EXPECT_FALSE(kept);
  EXPECT_EQ(told, (std::vector<std::optional<Shortcut>>{k, std::nullopt}));
}

}  // namespace
}  // namespace tarnwick::test
