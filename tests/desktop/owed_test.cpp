#include <QDir>
#include <chrono>
#include <csignal>

#include "harness/status_desktop_test.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"
#include "utility/bar_client/bar_status_bar.h"
#include "utility/loop/qt_main_loop.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

// What the utility still has to put right when a person, a program or the bar got in its way.
class OwedTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    grantUtility();
  }
  void startAll(const std::vector<Client>& hiddenOnes, const std::vector<Client>& shownOnes = {}) {
    startBar();
    clients = startClients(hiddenOnes);
    startClients(shownOnes);
    hideInDefaults(hiddenOnes);
    utility = &startUtility();
    ASSERT_TRUE(waitFor([&] {
      return collapsed() && std::ranges::all_of(hiddenOnes, [&](auto& c) { return hidden(c); });
    })) << row();
  }
  nlohmann::json stowed() { return desktop.readDefaults()["stowedBundleIds"]; }
  bool adjoin() {
    const auto handle = native("tarnwick.handle");
    const auto boundary = native("tarnwick.boundary");
    return handle && boundary && handle->frame.left() >= 0 &&
           boundary->frame.right() == handle->frame.left();
  }

  Program* utility = nullptr;
  std::vector<Program*> clients;
};

TEST_F(OwedTest, AnApplicationReleasedWhileItDoesNotRunIsBroughtBackWhenItStarts) {
  startAll({gxkb, parcellite});
  clients[0]->kill();
  ASSERT_TRUE(waitFor([&] { return bar.itemsOf(gxkb.bundleId).empty(); }));
  ASSERT_TRUE(release(gxkb));
  utility->kill();
  utility = &startUtility();
  ASSERT_TRUE(waitFor([&] { return collapsed(); }));
  desktop.start(gxkb.program);
  EXPECT_TRUE(waitFor([&] { return shown(gxkb) && collapsed(); })) << row();
  EXPECT_TRUE(hidden(parcellite)) << row();
  EXPECT_TRUE(waitFor([&] { return stowed() == nlohmann::json{parcellite.bundleId}; }));
}

TEST_F(OwedTest, AReleaseOutlivesTheEndOfTheUtility) {
  startAll({gxkb, parcellite});
  for (const auto delay : {0ms, 100ms, 200ms, 300ms}) {
    ASSERT_TRUE(release(parcellite));
    letPass(delay);
    utility->kill();
    utility = &startUtility();
    EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(gxkb) && shown(parcellite); })) << row();
    ASSERT_TRUE(hide(parcellite));
    ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(parcellite); })) << row();
  }
}

TEST_F(OwedTest, AnEditOfTheFileTakesEffectAtOnce) {
  startAll({gxkb, parcellite}, {volumeicon});
  letPass(2s);  // so that no pass is due but the timer's
  hideInDefaults({volumeicon});
  EXPECT_TRUE(waitFor([&] { return collapsed() && shown(gxkb) && shown(parcellite); }, 9s))
      << row();
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(volumeicon); }, 9s)) << row();
  desktop.writeDefaults(nlohmann::json::object());
  EXPECT_TRUE(waitFor([&] { return shown(volumeicon); }, 9s)) << row();
}

TEST_F(OwedTest, WhatCannotBeStoredIsAnError) {
  startBar();
  startUtility();
  QDir().mkpath(desktop.folder("config") + "/tarnwick/defaults.json");
  EXPECT_FALSE(hide(gxkb));
  EXPECT_FALSE(release(gxkb));
}

TEST_F(OwedTest, TheHandleStaysInSight) {
  startBar();
  startClients({gxkb, volumeicon});
  startUtility();
  const auto dragHandle = [&] {
    ASSERT_TRUE(waitFor([&] { return adjoin(); })) << row();
    bar.drag(*native("tarnwick.handle"), native("tarnwick.boundary")->frame.left() - 20);
    ASSERT_TRUE(waitFor([&] { return !adjoin(); })) << row();
  };
  dragHandle();
  ASSERT_TRUE(hide(gxkb));
  EXPECT_TRUE(waitFor([&] { return collapsed() && hidden(gxkb) && adjoin(); })) << row();
  EXPECT_TRUE(shown(volumeicon)) << row();

  ASSERT_TRUE(release(gxkb));
  ASSERT_TRUE(waitFor([&] { return boundaryLength() == 2 && shown(gxkb); })) << row();
  dragHandle();
  ASSERT_EQ(::kill(static_cast<pid_t>(desktop.ownerOf(BarProxy::service)), SIGKILL), 0);
  EXPECT_TRUE(waitFor([&] { return native("tarnwick.boundary") && adjoin(); })) << row();
}

TEST_F(OwedTest, AnItemThatTheBarRefusedIsAddedAgainAndCanBePutInOrder) {
  startBar();
  std::vector<quint64> others;  // as many as one connection may have
  for (int i = 0; i < 64; ++i) others.push_back(bar.addItem("other" + QString::number(i), 1));
  QtMainLoop loop;
  BarConnection connection(loop, desktop.bus());
  const BarSnapshots snapshots(connection);
  BarStatusBar items(connection, snapshots);
  const auto handle = items.addItem(24, "tarnwick.handle");
  ASSERT_TRUE(waitFor([&] { return connection.isPresent(); }));
  for (const std::size_t i : {0, 1}) bar.call("RemoveItem", {others[i]});
  const auto boundary = items.addItem(2, "tarnwick.boundary");
  const auto observer = items.onItemsPlaced([&] {
    EXPECT_FALSE(adjoin()) << "the one that came last stands leftmost";
    boundary->placeLeftOf(*handle);
  });
  EXPECT_TRUE(waitFor([&] { return adjoin(); })) << row();
}

}  // namespace
}  // namespace tarnwick::test
