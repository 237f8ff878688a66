#include <QImage>

#include "tests/desktop/harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

class PanelTest : public StatusDesktopTest {
 protected:
  void click(QPointF at) {
    desktop
        .start("xdotool", {"mousemove", QString::number(qRound(at.x())),
                           QString::number(qRound(at.y())), "click", "1"})
        .waitForEnd();
  }
  bool panelIsShown() {
    Program& search =
        desktop.start("xdotool", {"search", "--onlyvisible", "--name", "^Hidden apps$"});
    search.waitForEnd();
    return !search.output().trimmed().isEmpty();
  }
  QString pictureOf(const Client& client) const {
    return desktop.folder("data") + "/Tarnwick/iconcache-2x/" + client.bundleId + ".png";
  }
};

TEST_F(PanelTest, OpensBelowTheHandleAndClosesWithAPressElsewhere) {
  grantUtility();
  startBar();
  startClients({copyq, parcellite});
  desktop.writeDefaults({{"hiddenBundleIds", {copyq.bundleId, parcellite.bundleId}},
                         {"panelIconStyle", "statusIcon"}});
  startUtility();
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(copyq) && hidden(parcellite); })) << row();

  // The pass has taken pictures, two pixels for each of the icon's 18 points at the most.
  for (const Client& client : {copyq, parcellite}) {
    const QImage picture(pictureOf(client));
    EXPECT_GT(picture.width(), 20) << client.program;
    EXPECT_LE(picture.width(), 52) << client.program;
    EXPECT_LE(picture.height(), 48) << client.program;
    EXPECT_TRUE(picture.hasAlphaChannel()) << client.program;
  }

  EXPECT_FALSE(panelIsShown());
  const QPointF handle = native("tarnwick.handle")->frame.center();
  click(handle);
  ASSERT_TRUE(waitFor([&] { return panelIsShown(); }));
  click(handle);
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a second click closes it";
  click(handle);
  ASSERT_TRUE(waitFor([&] { return panelIsShown(); }));
  click({300, 600});
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); })) << "a press elsewhere closes it";
}

}  // namespace
}  // namespace tarnwick::test
