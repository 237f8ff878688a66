#include <chrono>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

class HideTest : public StatusDesktopTest {};

TEST_F(HideTest, ApplicationsOfBothProtocolsLeaveTheBarAndComeBack) {
  grantUtility();
  startBar();
  startClients({copyq, gxkb, parcellite, volumeicon});
  startUtility();
  EXPECT_EQ(boundaryLength(), 2);
  const QStringList others = order({copyq, parcellite});

  ASSERT_TRUE(hide(copyq));
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(copyq); })) << row();
  ASSERT_TRUE(hide(parcellite));
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  EXPECT_TRUE(hidden(copyq) && shown(gxkb) && shown(volumeicon)) << row();
  EXPECT_GE(native("tarnwick.handle")->frame.left(), 0);
  EXPECT_EQ(order({copyq, parcellite}), others);
  EXPECT_EQ(desktop.readDefaults()["hiddenBundleIds"],
            (nlohmann::json{copyq.bundleId, parcellite.bundleId}));

  ASSERT_TRUE(release(copyq));
  ASSERT_TRUE(waitFor([&] { return collapsed() && shown(copyq); })) << row();
  EXPECT_TRUE(hidden(parcellite) && shown(gxkb) && shown(volumeicon)) << row();

  ASSERT_TRUE(release(parcellite));
  ASSERT_TRUE(waitFor([&] { return boundaryLength() == 2 && shown(parcellite); })) << row();
  EXPECT_TRUE(shown(copyq) && shown(gxkb) && shown(volumeicon)) << row();
}

TEST_F(HideTest, AnItemCrossesABoundaryBeyondTheBarsLeftEndAndComesBack) {
  grantUtility();
  startBar();
  startClients({gxkb});
  startUtility();
  const quint64 wide = bar.addItem("wide", 100);
  bar.drag(*bar.find("wide"), 2'000);
  const auto left = [&] { return bar.itemsOf(gxkb.bundleId).front().frame.left(); };
  bar.call("SetLength", {QVariant::fromValue<qulonglong>(wide), 100 + left() - 2});
  ASSERT_EQ(left(), 2) << row();
  ASSERT_LT(native("tarnwick.boundary")->frame.right(), 0) << row();
  const QStringList before = order();
  ASSERT_TRUE(hide(gxkb));
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(gxkb); })) << row();
  EXPECT_EQ(order().indexOf("gxkb/" + bar.itemsOf(gxkb.bundleId).front().hint), 0) << row();
  ASSERT_TRUE(release(gxkb));
  EXPECT_TRUE(waitFor([&] { return boundaryLength() == 2 && order() == before; })) << row();
}

// Its menu entry starts a script; the entry that names the program itself only opens files.
TEST_F(HideTest, AnApplicationIsKnownByItsMenuEntry) {
  grantUtility();
  startBar();
  startClients({remmina, parcellite});
  startUtility();
  ASSERT_TRUE(hide(remmina));
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(remmina); })) << row();
  EXPECT_TRUE(shown(parcellite)) << row();
}

TEST_F(HideTest, ApplicationStartedLaterIsPutAwayThreeSecondsAfterItsLaunch) {
  grantUtility();
  hideInDefaults({gxkb, parcellite});
  startBar();
  startUtility();
  letPass(3500ms);  // until no pass is due but the next launch's
  for (const Client& client : {gxkb, parcellite}) {
    EXPECT_TRUE(collapsed()) << row();
    startClients({client});
    const auto seen = std::chrono::steady_clock::now();
    // Sooner than the pass that is made every 30 seconds.
    ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(client); }, 9s)) << row();
    EXPECT_GE(std::chrono::steady_clock::now() - seen, 3s) << client.program;
  }
  EXPECT_TRUE(hidden(gxkb)) << row();
}

}  // namespace
}  // namespace tarnwick::test
