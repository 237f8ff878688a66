#include <QImage>
#include <QRect>
#include <csignal>
#include <nlohmann/json.hpp>

#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

class PanelTest : public StatusDesktopTest {
 protected:
  QRect panelFrame() { return desktop.windowFrame("Hidden apps"); }
  bool panelIsShown() { return !panelFrame().isEmpty(); }

  QPointF handle() { return native("tarnwick.handle")->frame.center(); }

  void openPanel() {
    desktop.click(handle());
    ASSERT_TRUE(waitFor([&] { return panelIsShown(); }));
  }
};

TEST_F(PanelTest, OpensBelowTheHandleAndClosesByEachWay) {
  grantUtility();
  Program& barProgram = startBar();
  startClients({copyq, parcellite});
  hideInDefaults({copyq});
  startUtility();
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(copyq); })) << row();

  EXPECT_FALSE(panelIsShown());
  openPanel();
  const QRectF anchor = native("tarnwick.handle")->frame;
  EXPECT_EQ(panelFrame().top(), anchor.bottom() + 4);
  EXPECT_EQ(panelFrame().right() + 1, anchor.right());
  desktop.click(handle());
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a second click closes it";
  openPanel();
  desktop.click({300, 600});
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a press on the desktop closes it";
  desktop.start("xdotool", {"keydown", "super"}).waitForEnd();
  desktop.click(handle());
  desktop.start("xdotool", {"keyup", "super"}).waitForEnd();
  desktop.click(handle(), 3);
  EXPECT_TRUE(waitFor([&] { return !desktop.windowFrame("Tarnwick").isEmpty(); }))
      << "a right click opens the settings";
  EXPECT_FALSE(panelIsShown()) << "a Super-click does nothing";
  const QPoint behind = desktop.windowFrame("Tarnwick").center();
  const QStringList search{"search", "--onlyvisible", "--name", "^Tarnwick$"};
  desktop.start("xdotool", search + QStringList{"set_desktop_for_window", "1"}).waitForEnd();
  ASSERT_TRUE(waitFor([&] {
    Program& found = desktop.start("xdotool", search);
    found.waitForEnd();
    return found.output().isEmpty();
  }));
  openPanel();
  desktop.click(behind);
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a press where a window of ours was";
  openPanel();
  desktop.click(bar.itemsOf(parcellite.bundleId).front().frame.center());
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a press on another's item closes it";
  desktop.start("xdotool", {"key", "Escape"}).waitForEnd();  // whatever that item has opened
  openPanel();
  barProgram.signal(SIGKILL);
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "it goes with the bar";
}

TEST_F(PanelTest, WithoutPermissionItOpensBelowTheHandleAndNothingIsHidden) {
  startBar();
  startClients({parcellite});
  hideInDefaults({parcellite});
  startUtility();
  const QRectF anchor = native("tarnwick.handle")->frame;
  openPanel();
  EXPECT_EQ(panelFrame().top(), anchor.bottom() + 4);
  desktop.click(handle());
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));
  letPass(std::chrono::milliseconds(1500));  // a first pass would be over
  EXPECT_TRUE(shown(parcellite)) << row();
}

TEST_F(PanelTest, LiesBelowTheHandleOnAnotherPrimaryMonitorAndWhenScaled) {
  const auto xrandr = [&](const QStringList& arguments) {
    desktop.start("xrandr", arguments).waitForEnd();
  };
  grantUtility();
  xrandr({"--setmonitor", "Left", "640/170x800/200+0+0", "none"});
  xrandr({"--setmonitor", "Right", "640/170x800/200+640+0", "screen"});
  xrandr({"--output", "screen", "--primary"});
  for (const int scale : {1, 2}) {
    desktop.setVariable("QT_SCALE_FACTOR", QString::number(scale));
    Program& barProgram = startBar();
    Program& utility = startUtility();
    const auto inPixels = [&](QPointF points) { return QPointF(640, 0) + points * scale; };
    ASSERT_TRUE(waitFor([&] { return native("tarnwick.handle").has_value(); }));
    const QRectF anchor = native("tarnwick.handle")->frame;
    desktop.click(inPixels(anchor.center()));
    ASSERT_TRUE(waitFor([&] { return panelIsShown(); }));
    EXPECT_EQ(panelFrame().topRight() + QPoint(1, 0),
              inPixels(anchor.bottomRight() + QPointF(0, 4)).toPoint());
    desktop.click({100, 400});
    EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a press on the other monitor";
    ASSERT_TRUE(utility.terminate());
    ASSERT_TRUE(barProgram.terminate());
  }
}

TEST_F(PanelTest, EntriesAreButtonsToAssistiveTechnology) {
  AccessibleTree tree(desktop);
  grantUtility();
  startBar();
  startClients({copyq, parcellite});
  hideInDefaults({copyq, parcellite});
  startUtility();
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(copyq) && hidden(parcellite); })) << row();
  ASSERT_TRUE(desktop.activateAction("toggle-panel"));
  ASSERT_TRUE(waitFor([&] { return tree.find("tarnwick", "Parcellite").has_value(); }));
  const auto entry = tree.find("tarnwick", "CopyQ");
  ASSERT_TRUE(entry.has_value());
  EXPECT_EQ(entry->role, "push button");
  EXPECT_TRUE(tree.actions(*entry).contains("Press"));
  EXPECT_TRUE(tree.doAction(*entry, tree.actions(*entry).indexOf("Press")));
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "its press is that of the pointer";
}

TEST_F(PanelTest, TwoHundredEntriesInTwentyGroupsStayOnTheScreen) {
  nlohmann::json hidden = nlohmann::json::array();
  nlohmann::json groups = nlohmann::json::array();
  for (int group = 0; group < 20; ++group) {
    nlohmann::json members = nlohmann::json::array();
    for (int i = 0; i < 10; ++i) {
      members.push_back(std::to_string(group * 10 + i));
      hidden.push_back(members.back());
    }
    groups.push_back({{"name", "Group " + std::to_string(group)}, {"bundleIds", members}});
  }
  const auto bytes = QByteArray::fromStdString(groups.dump()).toBase64().toStdString();
  desktop.writeDefaults({{"hiddenBundleIds", hidden}, {"appGroups", {{"$data", bytes}}}});
  grantUtility();
  startBar();
  startUtility();
  openPanel();
  const QRect frame = panelFrame();
  EXPECT_TRUE(QRect(0, 24, 1280, 776).contains(frame));
  EXPECT_GT(frame.height(), 600);

  // The last group is out of sight until the wheel is turned.
  const auto middle = frame.center();
  const QImage before = desktop.screenshot().copy(frame);
  desktop.start("xdotool", {"mousemove", QString::number(middle.x()), QString::number(middle.y()),
                            "click", "--repeat", "50", "5"});
  EXPECT_TRUE(waitFor([&] { return desktop.screenshot().copy(frame) != before; }));
  EXPECT_TRUE(panelIsShown());
}

TEST_F(PanelTest, RevealShowsHiddenItemsForAWhileAndAReleaseEndsIt) {
  grantUtility();
  startBar();
  startClients({copyq, gxkb, parcellite});
  hideInDefaults({copyq, parcellite});
  startUtility();
  const auto settled = [&] { return collapsed() && hidden(copyq) && hidden(parcellite); };
  ASSERT_TRUE(waitFor(settled)) << row();
  ASSERT_TRUE(desktop.activateAction("reveal"));
  ASSERT_TRUE(desktop.activateAction("reveal"));
  EXPECT_TRUE(waitFor([&] { return shown(copyq) && shown(parcellite); })) << row();
  EXPECT_TRUE(waitFor(settled, std::chrono::seconds(60))) << row();

  ASSERT_TRUE(desktop.activateAction("reveal"));
  ASSERT_TRUE(waitFor([&] { return shown(copyq) && shown(parcellite); })) << row();
  ASSERT_TRUE(release(copyq));
  EXPECT_TRUE(waitFor([&] { return collapsed() && shown(copyq) && hidden(parcellite); })) << row();
}

}  // namespace
}  // namespace tarnwick::test
