#include <QRect>
#include <chrono>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

constexpr Client menuClient{"fake_sni_client", "fake_sni_client"};

// The utility with super + down for the panel.
class ShortcutsTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    grantUtility();
    startBar();
    desktop.writeDefaults(
        {{"hiddenBundleIds", {menuClient.bundleId}},
         {"KeyboardShortcuts_togglePanel", R"({"carbonKeyCode":125,"carbonModifiers":256})"}});
    client = startClients({menuClient}).front();
    startUtility();
    ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(menuClient); })) << row();
  }

  bool panelIsShown() { return !desktop.windowFrame("Hidden apps").isEmpty(); }
  // A window of the utility's that is not the panel.
  bool menuIsShown() {
    Program& search =
        desktop.start("xdotool", {"search", "--all", "--onlyvisible", "--class", "^tarnwick$"});
    search.waitForEnd();
    const auto windows = search.output().count('\n');
    return windows > (panelIsShown() ? 1 : 0);
  }
  void keys(const QStringList& arguments) {
    ASSERT_TRUE(desktop.start("xdotool", arguments).waitForEnd());
  }

  Program* client = nullptr;
};

TEST_F(ShortcutsTest, ToggleThePanelOnRelease) {
  keys({"keydown", "super", "keydown", "Down"});
  letPass(500ms);
  EXPECT_FALSE(panelIsShown());
  keys({"keyup", "super", "keyup", "Down"});
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  keys({"key", "super+Down"});
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));
}

TEST_F(ShortcutsTest, WorkWhileTheMenuOfAHiddenItemIsOpen) {
  keys({"key", "super+Down"});
  ASSERT_TRUE(waitFor([&] { return panelIsShown(); }));
  desktop.click(desktop.windowFrame("Hidden apps").center());
  ASSERT_TRUE(waitFor([&] { return !panelIsShown(); }));
  // The menu comes up when its owner has answered, and then has the keyboard.
  ASSERT_TRUE(waitFor([&] { return menuIsShown(); }));
  keys({"key", "super+Down"});
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  EXPECT_TRUE(menuIsShown());
  keys({"key", "Down", "key", "Return"});
  EXPECT_TRUE(waitFor([&] { return client->output().contains("clicked"); }))
      << client->output().data();
  EXPECT_TRUE(waitFor([&] { return !menuIsShown(); }));
  keys({"key", "super+Down"});
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));
}

}  // namespace
}  // namespace tarnwick::test
