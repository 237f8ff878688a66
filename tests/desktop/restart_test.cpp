#include <signal.h>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

// Two hidden and two shown applications of both protocols, with everything settled.
class RestartTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    grantUtility();
    hideInDefaults({copyq, parcellite});
    barProgram = &startBar();
    clients = startClients({copyq, gxkb, parcellite, volumeicon});
    utility = &startUtility();
    ASSERT_TRUE(waitFor([&] { return settled(); })) << row();
    before = order();
  }

  bool settled() {
    return collapsed() && hidden(copyq) && hidden(parcellite) && shown(gxkb) && shown(volumeicon);
  }

  Program* barProgram = nullptr;
  Program* utility = nullptr;
  std::vector<Program*> clients;
  QStringList before;
};

TEST_F(RestartTest, EverythingReturnsToItsPlaceWhenTheBarIsKilled) {
  for (int round = 0; round < 2; ++round) {
    const qint64 old = desktop.ownerOf(BarProxy::service);
    ASSERT_EQ(::kill(static_cast<pid_t>(old), SIGKILL), 0);
    ASSERT_TRUE(waitFor([&] {
      const qint64 now = desktop.ownerOf(BarProxy::service);  // the utility starts it again
      return now != 0 && now != old;
    }));
    EXPECT_TRUE(waitFor([&] { return settled() && order() == before; })) << row();
    EXPECT_EQ(native("tarnwick.handle")->frame.width(), 24);
    EXPECT_EQ(bar.items().size(), static_cast<std::size_t>(before.size()));  // nobody twice
    EXPECT_TRUE(utility->running());
  }
}

TEST_F(RestartTest, HiddenItemsComeBackWithoutTheUtilityAndLeaveAgainWithIt) {
  for (const int signal : {SIGTERM, SIGKILL}) {
    utility->signal(signal);
    ASSERT_TRUE(utility->waitForEnd());
    EXPECT_EQ(utility->exitCode(), signal == SIGTERM ? 0 : -1);
    EXPECT_TRUE(waitFor([&] {
      return shown(copyq) && shown(parcellite) && shown(gxkb) && shown(volumeicon) &&
             !native("tarnwick.handle");
    })) << row();
    utility = &startUtility();
    EXPECT_TRUE(waitFor([&] { return settled() && order() == before; })) << row();
  }
}

TEST_F(RestartTest, EndingBarHandsAllIconsBack) {
  utility->kill();  // it would start another bar
  EXPECT_TRUE(barProgram->terminate());
  EXPECT_EQ(barProgram->exitCode(), 0);
  for (const Program* client : clients) {
    EXPECT_TRUE(client->running()) << client->name();
  }
  startBar();
  EXPECT_TRUE(waitFor([&] {
    return shown(copyq) && shown(parcellite) && shown(gxkb) && shown(volumeicon);
  })) << row();
}

TEST_F(RestartTest, RestartedClientGetsItsPlaceBack) {
  for (std::size_t i = 0; i < clients.size(); ++i) {
    const QString program = clients[i]->name();
    clients[i]->kill();
    ASSERT_TRUE(waitFor([&] { return order().size() == before.size() - 1; })) << row();
    desktop.start(program);
    EXPECT_TRUE(waitFor([&] { return settled() && order() == before; })) << program << '\n'
                                                                         << row();
  }
}

}  // namespace
}  // namespace tarnwick::test
