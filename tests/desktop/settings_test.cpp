#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>
#include <nlohmann/json.hpp>

#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

using State = AccessibleTree::State;

constexpr auto button = "push button";
constexpr auto checkBox = "check box";
constexpr auto field = "text";

// The settings window, used with the pointer and the keyboard. Where things are is asked of the
// accessibility tree.
class SettingsTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    tree = std::make_unique<AccessibleTree>(desktop);
    startBar();
  }

  QRect frame() { return desktop.windowFrame("Tarnwick"); }

  // Launches the running utility again, as from a menu of applications.
  void open(const QString& program = "tarnwick") {
    Program& second = desktop.start(program);
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitCode(), 0);
    ASSERT_TRUE(waitFor([&] { return !frame().isEmpty(); }));
  }

  std::optional<Accessible> shownControl(const QString& name, const QString& role,
                                         const QString& application = "tarnwick") {
    auto found = tree->find(application, name, role);
    return found && tree->has(*found, State::showing) ? found : std::nullopt;
  }
  bool isChecked(const QString& name) {
    const auto control = shownControl(name, checkBox);
    return control && tree->has(*control, State::checked);
  }
  QString textOf(const QString& name) {
    const auto control = shownControl(name, field);
    return control ? control->text : QString();
  }

  // Scrolls the form until the control is in sight and clicks on it.
  void press(const QString& name, const QString& role) {
    const QRect place = scrollToSetting(desktop, *tree, name, role);
    ASSERT_FALSE(place.isEmpty()) << qPrintable(name);
    desktop.click(place.center());
  }
  void xdotool(const QStringList& arguments) {
    ASSERT_TRUE(desktop.start("xdotool", arguments).waitForEnd());
  }
  QByteArray activeTitle() {
    Program& active = desktop.start("xdotool", {"getactivewindow", "getwindowname"});
    active.waitForEnd();
    return active.output().trimmed();
  }
  void keys(const QStringList& names) { xdotool(QStringList{"key"} + names); }
  void type(const QString& text) { xdotool({"type", "--delay", "40", text}); }

  std::string groups() {
    const auto defaults = desktop.readDefaults();
    const auto stored = defaults.find("appGroups");
    if (stored == defaults.end()) return {};
    return QByteArray::fromBase64(QByteArray::fromStdString((*stored)["$data"].get<std::string>()))
        .toStdString();
  }
  nlohmann::json stored(const char* key) { return desktop.readDefaults()[key]; }

  std::unique_ptr<AccessibleTree> tree;
};

TEST_F(SettingsTest, FromTheWarningToAHiddenApplicationInAGroupAndBack) {
  startClients({gxkb, parcellite});
  startUtility();
  open();
  ASSERT_TRUE(waitFor([&] { return textOf("Icons per row") == "5"; }));
  EXPECT_FALSE(shownControl("Parcellite", checkBox));
  EXPECT_TRUE(shownControl("No third-party menu bar apps found.", "label"));

  press("Open Privacy Settings…", button);
  ASSERT_TRUE(waitFor([&] { return !desktop.windowFrame("Privacy").isEmpty(); }));
  EXPECT_TRUE(waitFor([&] { return activeTitle() == "Accessibility"; })) << "the question has it";
  for (const auto& [pane, title] : {std::pair("menu-bar", "Menu Bar"), {"privacy", "Privacy"}}) {
    bar.call("ShowPane", {pane});
    EXPECT_TRUE(waitFor([&] { return activeTitle() == title; })) << "it is not this test that asks";
  }
  std::optional<Accessible> allow;
  ASSERT_TRUE(waitFor([&] {
    allow = shownControl("Allow", button, "tarnwick-bar");
    return allow.has_value();
  }));
  desktop.click(tree->frameOf(*allow).center());
  ASSERT_TRUE(waitFor([&] { return !shownControl("Allow", button, "tarnwick-bar"); }));
  // The privacy window may lie above; launching again brings the settings forward.
  open();
  const auto objects = tree->objectsOf("tarnwick-bar");
  EXPECT_TRUE(std::any_of(objects.begin(), objects.end(), [](const Accessible& object) {
    return object.name.startsWith("Control other applications’ items\nsince ");
  }));
  press("Rescan", button);
  ASSERT_TRUE(waitFor([&] { return shownControl("Parcellite", checkBox).has_value(); }));
  EXPECT_FALSE(shownControl("Open Privacy Settings…", button));
  EXPECT_FALSE(shownControl("No third-party menu bar apps found.", "label"));

  press("Parcellite", checkBox);
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  EXPECT_TRUE(shown(gxkb)) << row();
  ASSERT_TRUE(waitFor([&] { return shownControl("Group Parcellite", field).has_value(); }));
  press("Group Parcellite", field);
  type("Work");
  EXPECT_TRUE(waitFor([&] {
    return groups() == R"([{"bundleIds":["parcellite"],"name":"Work"}])" ||
           groups() == R"([{"name":"Work","bundleIds":["parcellite"]}])";
  })) << groups();

  press("Parcellite", checkBox);
  EXPECT_TRUE(waitFor([&] { return boundaryLength() == 2 && shown(parcellite); })) << row();
  EXPECT_EQ(groups(), "[]");
  EXPECT_FALSE(shownControl("Group Parcellite", field));

  // What was granted is taken back where it is listed.
  const auto revoke = tree->find("tarnwick-bar", "Revoke", button);
  ASSERT_TRUE(revoke.has_value());
  const auto takeBack = [&] {
    return tree->doAction(*revoke, tree->actions(*revoke).indexOf("Press"));
  };
  const QString lock = desktop.folder("config") + "/tarnwick-bar/access.json.lock";
  ASSERT_TRUE(QFile::remove(lock) && QDir().mkdir(lock));
  ASSERT_TRUE(takeBack());
  EXPECT_TRUE(waitFor([&] {
    return shownControl("The change could not be saved.", "label", "tarnwick-bar").has_value();
  }));
  ASSERT_TRUE(QDir().rmdir(lock));
  ASSERT_TRUE(takeBack());
  ASSERT_TRUE(waitFor([&] {
    press("Rescan", button);
    return shownControl("Open Privacy Settings…", button).has_value();
  }));
  EXPECT_FALSE(shownControl("Parcellite", checkBox));

  press("Open Menu Bar Settings…", button);
  EXPECT_TRUE(
      waitFor([&] { return shownControl("Show the date", checkBox, "tarnwick-bar").has_value(); }));
}

TEST_F(SettingsTest, ColumnsFollowTheFieldTheArrowKeysAndTheStepper) {
  grantUtility();
  startUtility();
  open();
  press("Icons per row", field);
  const auto becomes = [&](int value) {
    return waitFor([&] {
      return stored("panelColumns") == value && textOf("Icons per row") == QString::number(value);
    });
  };
  for (const auto& [typed, value] : {std::pair("0", 1), {"25", 20}, {"7", 7}, {"50", 20}}) {
    keys({"ctrl+a"});
    type(typed);
    keys({"Return"});
    EXPECT_TRUE(becomes(value)) << typed;
  }
  press("Decrease", button);
  EXPECT_TRUE(becomes(19));
  press("Increase", button);
  EXPECT_TRUE(becomes(20));
  EXPECT_FALSE(tree->has(*shownControl("Increase", button), State::enabled));
  keys({"Down", "Down"});
  EXPECT_TRUE(becomes(18));
  keys({"ctrl+a"});
  type("nine");
  keys({"Tab"});
  EXPECT_TRUE(becomes(18)) << "what is no number is taken back";
}

TEST_F(SettingsTest, StylesAreChosenWithTheKeyboard) {
  desktop.grant(PrivateDesktop::pathOf("tarnwick"), {"accessibility"});
  startUtility();
  open();
  press("Icons per row", field);
  keys({"Tab", "Down"});
  EXPECT_TRUE(waitFor([&] { return stored("panelIconStyle") == "statusIcon"; }));
  const QString note =
      "Menu bar icons need Screen Capture permission. Grant it in the privacy settings.";
  EXPECT_TRUE(waitFor([&] { return shownControl(note, "label").has_value(); }));
  std::optional<Accessible> deny;
  ASSERT_TRUE(waitFor([&] {
    deny = shownControl("Don’t Allow", button, "tarnwick-bar");
    return deny.has_value();
  })) << "the desktop asks at once";
  desktop.click(tree->frameOf(*deny).center());

  open();
  QStringList meanings;  // "Menu bar icon" is a choice of one picker and the title of another
  for (const Accessible& object : tree->objectsOf("tarnwick")) {
    if (object.role == "combo box") meanings += tree->descriptionOf(object);
  }
  EXPECT_EQ(meanings, QStringList({"What the panel shows of each application",
                                   "How Tarnwick’s own icon in the bar looks"}));
  press("Open Privacy Settings…", button);
  ASSERT_TRUE(waitFor([&] { return activeTitle() == "Privacy"; }));

  open();
  press("Icons per row", field);
  keys({"Tab", "Up"});
  EXPECT_TRUE(waitFor([&] { return stored("panelIconStyle") == "appIcon"; }));
  EXPECT_TRUE(waitFor([&] { return !shownControl(note, "label"); }));

  const QImage before = desktop.screenshot().copy(native("tarnwick.handle")->frame.toRect());
  keys({"Tab", "Down"});
  EXPECT_TRUE(waitFor([&] { return stored("handleIconStyle") == "color"; }));
  EXPECT_TRUE(waitFor([&] {
    return desktop.screenshot().copy(native("tarnwick.handle")->frame.toRect()) != before;
  }));
}

TEST_F(SettingsTest, LoginSwitchWritesAnAutostartEntryAndShowsTheRealState) {
  const QString folder = desktop.folder("config") + "/autostart";
  const QString entry = folder + "/org.tarnwick.Tarnwick.desktop";
  startUtility();
  open();
  press("Launch at login", checkBox);
  ASSERT_TRUE(waitFor([&] { return QFile::exists(entry) && isChecked("Launch at login"); }));
  QFile file(entry);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().contains("Exec=" + PrivateDesktop::pathOf("tarnwick").toUtf8()));

  // Another tool takes it away; seen when the window comes forward again.
  ASSERT_TRUE(QFile::remove(entry));
  keys({"ctrl+w"});
  ASSERT_TRUE(waitFor([&] { return frame().isEmpty(); }));
  open();
  EXPECT_TRUE(waitFor([&] { return !isChecked("Launch at login"); }));

  // A folder that cannot be written to.
  ASSERT_TRUE(QDir(folder).removeRecursively());
  ASSERT_TRUE(QFile(folder).open(QIODevice::WriteOnly));
  press("Launch at login", checkBox);
  letPass(std::chrono::milliseconds(300));
  EXPECT_FALSE(isChecked("Launch at login"));
}

TEST_F(SettingsTest, WindowAnswersToKeysAndComesBackWhereItWas) {
  Program& utility = startUtility();
  open();
  const auto place = [&] {
    return tree->frameOf(*tree->find("tarnwick", "Icons per row", field)).topLeft();
  };
  const QPoint before = place();
  xdotool({"search", "--onlyvisible", "--name", "^Tarnwick$", "windowmove", "123", "77"});
  // Until the utility has been told, too.
  ASSERT_TRUE(waitFor([&] { return place() != before; }));
  const QRect moved = frame();
  for (int round = 0; round < 2; ++round) {
    keys({"ctrl+w"});
    ASSERT_TRUE(waitFor([&] { return frame().isEmpty(); }));
    open();
    EXPECT_TRUE(waitFor([&] { return frame() == moved; })) << round;
  }
  keys({"ctrl+q"});
  EXPECT_TRUE(utility.waitForEnd());
  EXPECT_EQ(utility.exitCode(), 0);
}

TEST_F(SettingsTest, TheFocusIsSeenWhereverItIs) {
  grantUtility();
  startClients({parcellite});
  startUtility();
  open();
  ASSERT_TRUE(waitFor([&] { return shownControl("Parcellite", checkBox).has_value(); }));
  const QRect row = tree->frameOf(*shownControl("Parcellite", checkBox));
  const QImage before = desktop.screenshot().copy(row);
  keys({"space"});
  keys({"Tab"});
  EXPECT_TRUE(waitFor([&] {
    return tree->has(*shownControl("Parcellite", checkBox), State::focused) &&
           desktop.screenshot().copy(row) != before;  // its ring
  }));
  EXPECT_FALSE(isChecked("Parcellite")) << "nothing had the focus";
  keys({"space"});
  EXPECT_TRUE(waitFor([&] { return isChecked("Parcellite"); }));

  const auto focused = [&]() -> std::optional<Accessible> {
    for (const Accessible& object : tree->objectsOf("tarnwick")) {
      const bool control = object.role != "frame" && object.role != "filler";
      if (control && tree->has(object, State::focused)) return object;
    }
    return std::nullopt;
  };
  const QRect window = tree->frameOf(*tree->find("tarnwick", "Tarnwick", "frame"));
  QString last = "Parcellite";
  for (int control = 0; control < 12; ++control) {  // to the end and round
    keys({"Tab"});
    EXPECT_TRUE(waitFor([&] {
      const auto now = focused();
      if (!now || now->name == last || !window.contains(tree->frameOf(*now))) return false;
      last = now->name;
      return true;
    })) << qPrintable(last);
  }
}

TEST_F(SettingsTest, FollowsLightAndDark) {
  Program& portal = desktop.start("fake_portal", {"1"});
  ASSERT_TRUE(waitFor([&] { return desktop.ownerOf("org.freedesktop.portal.Desktop") != 0; }));
  startUtility();
  open();
  const auto ground = [&] {
    const QPoint place = frame().topLeft() + QPoint(8, 200);
    return desktop.screenshot().pixelColor(place).lightness();
  };
  EXPECT_TRUE(waitFor([&] { return ground() < 80; }));
  portal.write("2");
  EXPECT_TRUE(waitFor([&] { return ground() > 200; }));
}

TEST_F(SettingsTest, RestartStartsTheUpgradedProgramAndQuitGivesTheItemsBack) {
  const QString program = desktop.folder("home") + "/tarnwick";
  const QString original = PrivateDesktop::pathOf("tarnwick");
  ASSERT_TRUE(QFile::copy(original, program));
  desktop.grant(program, {"accessibility"});
  hideInDefaults({parcellite});
  startClients({gxkb, parcellite});
  Program& utility = desktop.start(program);
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  open(program);

  const auto instance = [&] {
    return desktop.bus().interface()->serviceOwner("org.tarnwick.Tarnwick").value();
  };
  const auto running = [&] {
    return QFile::symLinkTarget(
        QStringLiteral("/proc/%1/exe").arg(desktop.ownerOf("org.tarnwick.Tarnwick")));
  };
  const QString before = instance();
  ASSERT_TRUE(QFile::copy(original, program + ".new"));
  ASSERT_EQ(rename(qPrintable(program + ".new"), qPrintable(program)), 0);
  ASSERT_TRUE(running().endsWith("(deleted)"));
  press("Restart Tarnwick", button);
  ASSERT_TRUE(waitFor([&] { return !instance().isEmpty() && instance() != before; }));
  EXPECT_EQ(running(), program);
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  EXPECT_TRUE(frame().isEmpty());

  open(program);
  press("Quit Tarnwick", button);
  ASSERT_TRUE(utility.waitForEnd());
  EXPECT_EQ(utility.exitCode(), 0);
  EXPECT_TRUE(waitFor([&] { return shown(parcellite) && !native("tarnwick.handle"); })) << row();
}

}  // namespace
}  // namespace tarnwick::test
