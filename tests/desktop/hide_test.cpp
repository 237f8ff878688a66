#include <chrono>

#include "tests/desktop/harness/status_desktop_test.h"

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

TEST_F(HideTest, AllItemsOfAnApplicationGoTogether) {
  const Client twoNotifiers{"fake_sni_client", "fake_sni_client"};
  const Client twoIcons{"fake_xembed_client", "fake_xembed_client"};
  grantUtility();
  startBar();
  startClients({parcellite});
  desktop.start("fake_sni_client", {"--items", "2"});
  desktop.start("fake_xembed_client", {"--count", "2"});
  ASSERT_TRUE(waitFor([&] {
    return bar.itemsOf(twoNotifiers.bundleId).size() == 2 &&
           bar.itemsOf(twoIcons.bundleId).size() == 2 && shown(twoNotifiers) && shown(twoIcons);
  })) << row();
  startUtility();
  for (const Client& client : {twoNotifiers, twoIcons}) {
    ASSERT_TRUE(hide(client));
    EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(client); })) << row();
  }
  for (const Client& client : {twoNotifiers, twoIcons}) {
    ASSERT_TRUE(release(client));
    EXPECT_TRUE(waitFor([&] { return shown(client); })) << row();
  }
  EXPECT_TRUE(shown(parcellite));
}

TEST_F(HideTest, PassAskedForDuringAPassIsDropped) {
  grantUtility();
  startBar();
  startClients({gxkb, parcellite});
  startUtility();
  ASSERT_TRUE(hide(gxkb));
  ASSERT_TRUE(hide(parcellite));  // stored, but the pass under way knows nothing of it
  ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(gxkb); })) << row();
  EXPECT_TRUE(shown(parcellite)) << row();
  ASSERT_TRUE(hide(parcellite));
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
}

}  // namespace
}  // namespace tarnwick::test
