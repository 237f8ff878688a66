#include <chrono>

#include "harness/desktop_test.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

// A program with global shortcuts on a real X server, and keys that another process presses.
class HotKeysTest : public DesktopTest {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    probe = &desktop.start("shortcut_probe");
    ASSERT_TRUE(waitFor([&] { return next() == "ready"; }));
  }

  // Its next line; empty when there is none yet.
  QByteArray next() {
    const QByteArray all = probe->output();
    const auto end = all.indexOf('\n', read_);
    if (end < 0) return {};
    const QByteArray line = all.mid(read_, end - read_);
    read_ = end + 1;
    return line;
  }
  QByteArray answer(const QByteArray& command) {
    probe->write(command);
    QByteArray line;
    (void)waitFor([&] { return !(line = next()).isEmpty(); });
    return line;
  }
  void run(const QString& program, const QStringList& arguments) {
    ASSERT_TRUE(desktop.start(program, arguments).waitForEnd());
  }
  void keys(const QStringList& arguments) { run("xdotool", arguments); }
  // All that the probe has to say before its answer to a command that changes nothing.
  QByteArrayList heard() {
    probe->write("prints");
    QByteArrayList lines;
    (void)waitFor([&] {
      QByteArray line;
      while (!(line = next()).isEmpty()) {
        if (line == "prints") return true;
        lines += line;
      }
      return false;
    });
    return lines;
  }
  // What the key brings that key code K and control + super make.
  QByteArrayList strike() {
    keys({"key", "ctrl+super+k"});
    return heard();
  }

  const QByteArrayList once{"down a", "up a"};
  Program* probe = nullptr;

 private:
  qsizetype read_ = 0;
};

constexpr auto k = " 40 4352";  // control and command
constexpr int kKeyCode = 45;
constexpr int controlSuper = 4 | 64;
constexpr int capsLock = 2;

TEST_F(HotKeysTest, PressAndReleasePairWhateverTheLocksAndWhateverIsReleasedFirst) {
  ASSERT_EQ(answer(QByteArray("set a") + k), "a taken");
  for (const auto& lock : {"", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {  // both, at the third
    if (*lock != '\0') keys({"key", lock});
    EXPECT_EQ(strike(), once) << lock;
  }
  keys({"key", "Num_Lock"});
  keys({"keydown", "ctrl", "keydown", "super", "keydown", "k"});
  letPass(1500ms);  // the key repeats
  EXPECT_EQ(heard(), QByteArrayList{"down a"});
  keys({"keyup", "super", "keyup", "ctrl"});
  EXPECT_EQ(heard(), QByteArrayList());
  keys({"keyup", "k"});
  EXPECT_EQ(heard(), QByteArrayList{"up a"});
  keys({"key", "super+k", "key", "ctrl+super+shift+k", "key", "ctrl+super+j"});
  EXPECT_EQ(heard(), QByteArrayList());
  EXPECT_EQ(strike(), once);
}

TEST_F(HotKeysTest, KeysThatAreDownWhenTheShortcutIsSetDoNothing) {
  keys({"keydown", "ctrl", "keydown", "super", "keydown", "k"});
  ASSERT_EQ(answer(QByteArray("set a") + k), "a taken");
  letPass(1s);  // the key repeats
  keys({"keyup", "k", "keyup", "super", "keyup", "ctrl"});
  EXPECT_EQ(heard(), QByteArrayList());
  EXPECT_TRUE(waitFor([&] { return strike() == once; })) << "a moment later";
}

TEST_F(HotKeysTest, CombinationsOfOthersAreLeftToThem) {
  answer("disable a");
  answer(QByteArray("set a") + k);
  for (const auto& kind : {"core", "xi2", "xi2-keyboard"}) {
    // One state of the locks is enough.
    for (const int modifiers : {controlSuper, controlSuper | capsLock}) {
      SCOPED_TRACE(QStringLiteral("%1 %2").arg(kind).arg(modifiers).toStdString());
      // It can be had at all only when the probe has given everything back.
      Program& holder = desktop.start(
          "fake_key_holder", {kind, QString::number(kKeyCode), QString::number(modifiers)});
      ASSERT_TRUE(waitFor([&] { return holder.output() == "held\n"; })) << holder.output().data();
      EXPECT_EQ(answer("enable a"), "a not taken");
      EXPECT_EQ(strike(), QByteArrayList());
      holder.kill();
      EXPECT_EQ(answer("enable a"), "a taken");
      EXPECT_EQ(strike(), once);
      EXPECT_EQ(answer("disable a"), "a not taken");
    }
  }
}

TEST_F(HotKeysTest, OpenMenuOfOursLosesTheShortcutOnlyAndKeepsTheOrder) {
  ASSERT_EQ(answer("set a 125 256"), "a taken");  // super + down
  ASSERT_EQ(answer("menu"), "menu");
  // Not before the menu has the keyboard.
  ASSERT_TRUE(waitFor([&] {
    keys({"key", "super+Down"});
    return !heard().isEmpty();
  }));
  keys({"key", "super+Down", "key", "Down", "keydown", "super", "keydown", "Down", "keyup", "super",
        "keyup", "Down", "key", "Down", "key", "Return"});
  QByteArrayList all;
  EXPECT_TRUE(waitFor([&] { return (all += heard()).contains("chose second"); }));
  EXPECT_EQ(all, (QByteArrayList{"down a", "up a", "down a", "up a", "chose second"}));
  keys({"key", "super+Down"});
  EXPECT_EQ(heard(), once) << "grabbed again";
  ASSERT_EQ(answer("menu"), "menu");
  ASSERT_TRUE(waitFor([&] {
    keys({"key", "super+Down"});
    return !heard().isEmpty();
  }));
  keys({"keydown", "ISO_Level3_Shift", "keydown", "super", "keydown", "Down", "keyup",
        "ISO_Level3_Shift", "keyup", "Down", "keyup", "super"});
  EXPECT_EQ(heard(), QByteArrayList()) << "not pressed, not released";
}

TEST_F(HotKeysTest, GrabsFollowModifiersThatComeGoAndMove) {
  const auto isTaken = [&](bool taken) {
    return waitFor([&] { return answer("enable a") == (taken ? "a taken" : "a not taken"); });
  };
  ASSERT_EQ(answer(QByteArray("set b 38 4352")), "b taken");
  keys({"keydown", "ctrl", "keydown", "super", "keydown", "j", "keyup", "super", "keyup", "ctrl"});
  EXPECT_EQ(heard(), QByteArrayList{"down b"});
  run("xmodmap", {"-e", "clear mod4"});
  ASSERT_TRUE(waitFor([&] { return answer("enable b") == "b not taken"; }));
  keys({"keyup", "j"});
  QByteArrayList told;
  EXPECT_TRUE(waitFor([&] { return (told += heard()) == QByteArrayList{"up b"}; }));
  EXPECT_EQ(answer(QByteArray("set a") + k), "a not taken");
  run("xmodmap", {"-e", "add mod4 = Super_L"});
  EXPECT_TRUE(waitFor([&] { return strike() == once; })) << "nobody has asked for it again";

  // Another program has had there for long what moves to it.
  Program& holder = desktop.start("fake_key_holder", {"core", QString::number(kKeyCode), "36"});
  ASSERT_TRUE(waitFor([&] { return holder.output() == "held\n"; }));
  run("xmodmap", {"-e", "clear mod4", "-e", "clear mod3", "-e", "add mod3 = Super_L"});
  EXPECT_TRUE(isTaken(false));
  EXPECT_EQ(strike(), QByteArrayList());
  holder.kill();
  EXPECT_TRUE(isTaken(true));
  EXPECT_EQ(strike(), once);
  run("setxkbmap", {"us"});
  EXPECT_TRUE(waitFor([&] { return strike() == once; }));
}

TEST_F(HotKeysTest, WorkInEveryLayoutAndAltGrIsAModifier) {
  ASSERT_EQ(answer(QByteArray("set a") + k), "a taken");
  ASSERT_EQ(answer(QByteArray("set b 363 4096")), "b taken");  // control + Print
  run("setxkbmap", {"-layout", "us,de,ru"});
  for (int layout = 0; layout < 3; ++layout) {
    SCOPED_TRACE(layout);
    EXPECT_EQ(answer("layout " + QByteArray::number(layout)), "layout");
    EXPECT_TRUE(waitFor([&] { return strike() == once; }));
    keys({"key", "ctrl+Print"});
    EXPECT_EQ(heard(), (QByteArrayList{"down b", "up b"}));
    if (layout != 1) continue;
    keys({"key", "ISO_Level3_Shift+ctrl+super+k"});
    EXPECT_EQ(heard(), QByteArrayList());
  }
}

TEST_F(HotKeysTest, SignsAreThoseOfTheLayout) {
  const struct {
    const char* layout;
    const char* variant;
    const char* expected;  // of the places of Q Y ; [ ^ (left of 1) M 1 - (next to 0)
  } cases[] = {
      {"us", "", "prints q y ; [ ` m 1 -"},    {"de", "", "prints q z ö ü ^ m 1 ß"},
      {"fr", "", "prints a y m ^ ² , & )"},    {"gr", "", "prints q y ; [ ` m 1 -"},
      {"ru", "", "prints q y ; [ ` m 1 -"},    {"jp", "", "prints q y ; @ Zenkaku Hankaku m 1 -"},
      {"ru,de", "", "prints q z ö ü ^ m 1 ß"}, {"us", "dvorak", "prints ' f s / ` m 1 ["},
  };
  for (const auto& c : cases) {
    run("setxkbmap", {"-layout", c.layout, "-variant", c.variant});
    QByteArray printed;
    EXPECT_TRUE(waitFor(
        [&] {
          printed = answer("prints 12 16 41 33 50 46 18 27");
          return printed == c.expected;
        },
        5s))
        << c.layout << ": " << printed.data();
  }
}

TEST_F(HotKeysTest, EveryKeyHasASign) {
  run("setxkbmap", {"-layout", "vn", "-variant", "us"});
  const QByteArray dead = "prints ` \u00B4 \u0323 \u0309";
  EXPECT_TRUE(waitFor([&] { return answer("prints 50 39 47 44") == dead; }));
  EXPECT_EQ(answer("prints 363 334 383 391 428 72 73 74 402"),
            "prints Print Scroll Lock Pause Menu Play Volume Up Volume Down Mute Help");
}

TEST_F(HotKeysTest, LayoutChosenWhileRunningChangesTheSigns) {
  run("setxkbmap", {"-layout", "us,de,ru"});
  const char* const expected[] = {"prints y [", "prints z ü", "prints z ü"};
  for (int layout = 0; layout < 3; ++layout) {  // the Russian one has no Latin letters
    EXPECT_EQ(answer("layout " + QByteArray::number(layout)), "layout");
    QByteArray printed;
    EXPECT_TRUE(waitFor([&] { return (printed = answer("prints 16 33")) == expected[layout]; }))
        << layout << ": " << printed.data();
  }
}

TEST_F(HotKeysTest, TheWindowManagersCombinationIsToldAsTaken) {
  const QByteArray altF4 = "desktop 118 2048", controlSuperK = "desktop 40 4352";
  EXPECT_TRUE(waitFor([&] { return answer(altF4) == "desktop configured grabbed"; }));
  EXPECT_EQ(answer(controlSuperK), "desktop");
  EXPECT_EQ(answer("set a 40 4352"), "a taken");
  EXPECT_EQ(answer(controlSuperK), "desktop") << "one's own is nobody else's";
  EXPECT_EQ(strike(), once) << "asking took it away";
}

}  // namespace
}  // namespace tarnwick::test
