#include <QDBusMessage>
#include <algorithm>
#include <functional>
#include <memory>

#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"
#include "harness/x_screen.h"

namespace tarnwick::test {
namespace {

using State = AccessibleTree::State;

constexpr auto panelRow = "Open the panel";
constexpr auto revealRow = "Show everything briefly";
constexpr auto panelKey = "KeyboardShortcuts_togglePanel";

// The settings' section of shortcuts, typed into.
class RecorderTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    desktop.setVariable("DBUS_SYSTEM_BUS_ADDRESS", desktop.busAddress());
    tree = std::make_unique<AccessibleTree>(desktop);
    grantUtility();
    startBar();
    startUtility();
    open();
  }

  void open() {
    Program& second = desktop.start("tarnwick");
    ASSERT_TRUE(second.waitForEnd());
    ASSERT_TRUE(waitFor([&] { return isOpen(); }));
  }
  bool isOpen() { return !desktop.windowFrame("Tarnwick").isEmpty(); }
  bool panelIsShown() { return !desktop.windowFrame("Hidden apps").isEmpty(); }
  void xdotool(const QStringList& arguments) {
    ASSERT_TRUE(desktop.start("xdotool", arguments).waitForEnd());
  }
  void keys(const QString& name) { xdotool({"key", name}); }
  QString shownIn(const QString& title) {
    const auto field = tree->find("tarnwick", title, "text");
    return field ? field->text : QString();
  }
  bool stored() { return desktop.readDefaults().contains(panelKey); }

  // As a screen reader is told.
  bool isRecording(const QString& title) {
    const auto field = tree->find("tarnwick", title, "text");
    return field && tree->has(*field, State::focused) &&
           tree->descriptionOf(*field) == "Press Shortcut";
  }
  bool waitForRecording(const QString& title, bool expected = true) {
    return waitFor([&] { return isRecording(title) == expected; });
  }
  QRect place(const QString& title) { return scrollToSetting(desktop, *tree, title, "text"); }
  void record(const QString& title) {
    desktop.click(place(title).center() - QPoint(30, 0));
    ASSERT_TRUE(waitForRecording(title));
  }

  // An alert that has the keyboard, and its buttons.
  bool waitForAlert(const QString& title) {
    return waitFor([&] {
      const auto alert = tree->find("tarnwick", title, "dialog");
      return alert && tree->has(*alert, State::active);
    });
  }
  std::optional<Accessible> button(const QString& label) {
    return tree->find("tarnwick", label, "push button");
  }

  std::unique_ptr<AccessibleTree> tree;
};

TEST_F(RecorderTest, RecordsWhatMayBeAShortcutAndClearsIt) {
  keys("F6");
  record(panelRow);
  EXPECT_EQ(shownIn(panelRow) + shownIn(revealRow), "") << "none had begun by itself";
  keys("k");
  keys("F5");
  ASSERT_TRUE(waitFor([&] { return shownIn(panelRow) == "F5"; })) << qPrintable(shownIn(panelRow));
  EXPECT_TRUE(waitFor([&] { return stored(); }));
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));

  record(panelRow);
  keys("F5");  // which is only recorded again
  record(panelRow);
  keys("Escape");
  EXPECT_FALSE(panelIsShown());
  EXPECT_EQ(shownIn(panelRow), "F5");
  const QRect field = place(panelRow);
  desktop.click(QPoint(field.right() - 16, field.center().y()));  // its clear button
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow).isEmpty() && !stored(); }));
  ASSERT_TRUE(waitForRecording(panelRow));
  keys("super+Down");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌘↓"; }));
  keys("super+Down");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
}

TEST_F(RecorderTest, GivesTheKeyboardBackToAnotherProgramAndTheShortcutsWorkThere) {
  startClients({copyq});
  ASSERT_TRUE(hide(copyq));
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(copyq); })) << row();
  record(revealRow);
  keys("ctrl+F9");
  ASSERT_TRUE(waitFor([&] { return shownIn(revealRow) == "⌃F9"; }));
  record(panelRow);
  desktop.start("copyq", {"show"});
  ASSERT_TRUE(waitFor([&] {
    Program& active = desktop.start("xdotool", {"getactivewindow", "getwindowname"});
    active.waitForEnd();
    return active.output().contains("CopyQ");
  }));
  ASSERT_TRUE(waitForRecording(panelRow, false));
  keys("ctrl+F9");
  EXPECT_TRUE(waitFor([&] { return shown(copyq) && boundaryLength() == 2; })) << row();
  EXPECT_EQ(shownIn(panelRow), "");
}

TEST_F(RecorderTest, AsksAboutWhatIsTaken) {
  // Control + super + K.
  Program& holder = desktop.start("fake_key_holder", {"xi2", "45", "68"});
  ASSERT_TRUE(waitFor([&] { return holder.output() == "held\n"; }));
  const auto taken = "This shortcut is already used by the system.";
  const struct {
    const char* keys;
    const char* title;
    bool canBeForced;
    const char* answer;  // a key that is not to force it
  } cases[] = {
      {"ctrl+w", "This shortcut cannot be used because it belongs to the menu item “Close Window”.",
       false, "Return"},
      {"ctrl+q",
       "This shortcut cannot be used because it belongs to the menu item “Quit Tarnwick”.", false,
       "Escape"},
      {"alt+F4", taken, true, "Return"},  // the window manager's
      {"ctrl+super+k", taken, true, "Escape"},
  };
  record(panelRow);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.keys);
    keys(c.keys);
    ASSERT_TRUE(waitForAlert(c.title));
    EXPECT_TRUE(button("OK"));
    EXPECT_EQ(button("Use Anyway").has_value(), c.canBeForced);
    EXPECT_FALSE(isRecording(panelRow));
    keys(c.answer);
    ASSERT_TRUE(waitForRecording(panelRow));
    EXPECT_FALSE(stored());
  }
  keys("ctrl+super+k");
  ASSERT_TRUE(waitForAlert(taken));
  Program& search = desktop.start("xdotool", {"search", "--onlyvisible", "--name", "^Tarnwick$"});
  search.waitForEnd();
  for (const QByteArray& line : search.output().trimmed().split('\n')) {
    PropertyWatch states(desktop.display(), line.toUInt(), "WM_STATE");
    xdotool({"windowminimize", line});
    EXPECT_TRUE(waitFor([&] {
      return states.changes() >= 2 &&
             numbersOf(desktop.display(), line.toUInt(), "WM_STATE").front() == 1;
    })) << "it cannot be minimised";
  }
  ASSERT_TRUE(waitForAlert(taken));
  EXPECT_TRUE(waitFor([&] {
    // The first click after it has come back may miss it.
    if (const auto force = button("Use Anyway")) desktop.click(tree->frameOf(*force).center());
    return waitFor([&] { return shownIn(panelRow) == "⌃⌘K" && stored(); }, std::chrono::seconds(1));
  }));
  EXPECT_FALSE(isRecording(panelRow));
  keys("ctrl+super+k");  // which the other program still has; recording would come after its action
  holder.kill();
  record(panelRow);
  EXPECT_FALSE(panelIsShown()) << "the other program had it";
  keys("ctrl+super+k");
  ASSERT_TRUE(waitForRecording(panelRow, false));
  keys("ctrl+super+k");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));

  record(revealRow);
  keys("alt+F4");
  ASSERT_TRUE(waitForAlert(taken));
  desktop.click(tree->frameOf(*button("Use Anyway")).center());
  EXPECT_TRUE(waitFor([&] { return shownIn(revealRow) == "⌥F4"; }));
  keys("alt+F4");
  EXPECT_TRUE(waitFor([&] { return !isOpen(); })) << "the window manager still has it";
}

TEST_F(RecorderTest, EndsByWhatHappensElsewhere) {
  const auto signal = [this](const QString& interface, const QString& name,
                             const QVariantList& arguments) {
    auto message = QDBusMessage::createSignal("/any", interface, name);
    message.setArguments(arguments);
    desktop.bus().send(message);
  };
  const struct {
    const char* label;
    std::function<void()> act;
  } cases[] = {
      {"desktop",
       [&] {
         desktop.click({20, 700});
       }},
      {"dock",
       [&] {
         desktop.click({300, 10}, 2);
       }},
      {"handle", [&] { desktop.click(native("tarnwick.handle")->frame.center()); }},
      {"panel", [&] { desktop.click(desktop.windowFrame("Hidden apps").center()); }},
      {"lock", [&] { signal("org.freedesktop.login1.Session", "Lock", {}); }},
      {"sleep", [&] { signal("org.freedesktop.login1.Manager", "PrepareForSleep", {true}); }},
      {"idle", [&] { signal("org.freedesktop.ScreenSaver", "ActiveChanged", {true}); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    record(panelRow);
    signal("org.freedesktop.ScreenSaver", "ActiveChanged", {false});
    desktop.bus().call(QDBusMessage::createMethodCall(  // comes after the signal
        "org.tarnwick.Tarnwick", "/", "org.freedesktop.DBus.Peer", "Ping"));
    xdotool({"keydown", "k"});
    EXPECT_TRUE(isRecording(panelRow));
    c.act();
    EXPECT_TRUE(waitFor([&] {
      keys("shift");  // so that it does not end for want of keys
      return !isRecording(panelRow);
    }));
    Program& locker = desktop.start("fake_key_holder", {"try"});
    EXPECT_TRUE(waitFor([&] { return !locker.output().isEmpty(); }));
    EXPECT_EQ(locker.output(), "held\n") << "though a key is down";
    locker.kill();
    xdotool({"keyup", "k"});
    if (std::string_view(c.label) == "handle") {
      EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
    }
  }
  EXPECT_FALSE(stored());
}

// A key lies under a book, and the screen is to be locked.
TEST_F(RecorderTest, ALockerGetsTheKeyboardAndHeldKeysStayNobodys) {
  record(panelRow);
  xdotool({"keydown", "k", "keydown", "ctrl"});
  Program& first = desktop.start("fake_key_holder", {"lock"});
  EXPECT_TRUE(waitFor([&] { return first.output() == "held\n"; }));
  EXPECT_FALSE(stored()) << "by a repetition";
  EXPECT_FALSE(isRecording(panelRow));
  xdotool({"keyup", "k", "keyup", "ctrl"});
  first.kill();
  record(panelRow);
  keys("ctrl+k");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌃K"; })) << "its release was not heard";
  record(panelRow);
  xdotool({"keydown", "Tab"});
  ASSERT_TRUE(waitForRecording(revealRow));
  Program& locker = desktop.start("fake_key_holder", {"lock"});
  EXPECT_TRUE(waitFor([&] { return locker.output() == "held\n"; }));
  EXPECT_TRUE(waitForRecording(revealRow, false));
  locker.kill();
  letPass(std::chrono::seconds(1));  // the key repeats
  for (const Accessible& object : tree->objectsOf("tarnwick")) {
    const bool control = object.role != "frame" && object.role != "filler";
    EXPECT_FALSE(control && tree->has(object, State::focused)) << qPrintable(object.name);
  }
  xdotool({"keyup", "Tab", "key", "Tab"});
  EXPECT_TRUE(waitFor([&] {
    const auto objects = tree->objectsOf("tarnwick");
    return std::any_of(objects.begin(), objects.end(), [&](const Accessible& object) {
      return object.role == "push button" && tree->has(object, State::focused);
    });
  })) << "a new press of it is heard";
}

TEST_F(RecorderTest, ShowsTheStoreTheLayoutAndEveryKey) {
  const auto edit = [this](const char* text) { desktop.writeDefaults({{panelKey, text}}); };
  edit(R"({"carbonKeyCode":16,"carbonModifiers":4352})");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌃⌘Y"; }));
  edit(R"({"carbonKeyCode":6,"carbonModifiers":4352})");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌃⌘Z"; }));
  keys("ctrl+super+y");  // would close again what the next one opens
  keys("ctrl+super+z");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  ASSERT_TRUE(desktop.start("setxkbmap", {"de"}).waitForEnd());
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌃⌘Y"; }));
  record(panelRow);
  keys("ISO_Level3_Shift+ctrl+q");
  EXPECT_TRUE(isRecording(panelRow));
  keys("ctrl+Print");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌃Print"; }));
  keys("ctrl+Print");
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));
}

TEST_F(RecorderTest, EndsWhenTheFocusGoesAndWithItsWindow) {
  record(panelRow);
  const QRect field = place(panelRow);  // with 3 points around it for the ring
  desktop.click(QPoint(field.left() + 1, field.center().y()));
  desktop.click(QPoint(field.left() + 1, field.center().y()), 3);
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "F5"; }));
  for (const int button : {1, 2}) {
    record(panelRow);
    desktop.click(QPoint(field.left() - 3, field.center().y()), button);
    EXPECT_TRUE(waitForRecording(panelRow, false)) << button;
  }
  record(panelRow);
  desktop.click(scrollToSetting(desktop, *tree, "App icon", "combo box").center());
  EXPECT_TRUE(waitForRecording(panelRow, false));
  keys("Escape");  // out of the pop-up
  keys("F7");
  record(revealRow);
  EXPECT_EQ(shownIn(panelRow), "F5");
  record(panelRow);
  EXPECT_FALSE(isRecording(revealRow));
  const auto window = tree->find("tarnwick", "Tarnwick", "frame");
  ASSERT_TRUE(window);
  desktop.click(tree->frameOf(*window).topRight() + QPoint(-10, -10));  // its close button
  ASSERT_TRUE(waitFor([&] { return !isOpen(); }));
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  open();
  EXPECT_EQ(shownIn(panelRow), "F5");
  EXPECT_FALSE(isRecording(panelRow));
}

TEST_F(RecorderTest, HeldKeysCountOnceAndDoNotHoldTheKeyboard) {
  record(panelRow);
  xdotool({"keydown", "Tab"});
  ASSERT_TRUE(waitForRecording(revealRow));
  letPass(std::chrono::seconds(1));  // the key repeats
  xdotool({"keyup", "Tab"});
  EXPECT_TRUE(waitForRecording(revealRow));
  EXPECT_FALSE(isRecording(panelRow));
  record(panelRow);
  xdotool({"keydown", "super", "key", "F5"});
  ASSERT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌘F5"; }));
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); })) << "with super still down";
  xdotool({"keyup", "super", "key", "super+F5"});
  ASSERT_TRUE(waitFor([&] { return !panelIsShown(); }));
  record(revealRow);
  xdotool({"keydown", "F6"});
  ASSERT_TRUE(waitFor([&] { return shownIn(revealRow) == "F6"; }));
  keys("super+F5");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); })) << "the first press counts";
}

}  // namespace
}  // namespace tarnwick::test
