#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

class BadClientsTest : public StatusDesktopTest {};

TEST_F(BadClientsTest, CostTheirOwnCellsAndNothingElse) {
  grantUtility();
  startBar();
  const auto good = startClients({copyq, volumeicon, gxkb, parcellite});
  startUtility();
  good[0]->freeze();
  good[1]->freeze();

  struct Case {
    const char* program;
    QStringList arguments;
    std::size_t cells;  // at most
  };
  const Case cases[] = {
      {"fake_sni_client", {"--never-answer"}, 1},
      {"fake_sni_client", {"--slow", "2000"}, 1},
      {"fake_sni_client", {"--pixmap-bytes-wrong"}, 1},
      {"fake_sni_client", {"--icon-size", "600", "--pixmap-bytes-wrong"}, 1},
      {"fake_sni_client", {"--wrong-types"}, 1},
      {"fake_sni_client", {"--no-id", "--no-get-all"}, 1},
      {"fake_sni_client", {"--status", "foo", "--tooltip", "t", "--tooltip-as-string"}, 1},
      {"fake_sni_client", {"--register-again", "50"}, 1},
      {"fake_sni_client", {"--register", "both"}, 1},
      {"fake_sni_client", {"--storm", "500", "--storm-changes"}, 1},
      {"fake_sni_client", {"--title-bytes", "1048576", "--label-bytes", "1048576"}, 1},
      {"fake_sni_client", {"--unexport-after", "300"}, 1},
      {"fake_sni_client", {"--quit-after", "300"}, 0},
      {"fake_xembed_client", {"--resize-loop"}, 1},
      {"fake_xembed_client", {"--size", "4000"}, 1},
      {"fake_xembed_client", {"--die-between"}, 0},
      {"fake_xembed_client", {"--die-docked"}, 0},
  };
  std::map<qint64, const Case*> bad;
  for (const Case& each : cases) {
    bad[desktop.start(each.program, each.arguments).pid()] = &each;
  }
  // What has more cells than it may.
  const auto excess = [&] {
    std::map<const Case*, std::size_t> cells;
    for (const BarItem& item : bar.items()) {
      const auto found = bad.find(item.pid);
      if (found != bad.end()) {
        ++cells[found->second];
      }
    }
    std::string text;
    for (const auto& [each, count] : cells) {
      if (count > each->cells) {
        text += each->arguments.join(' ').toStdString() + '\n';
      }
    }
    return text;
  };

  letPass(3500ms);  // every launch brings a pass, and a pass in the way of ours would drop it

  // A request during a pass of their launches is dropped, and a bar kept busy may answer a scan too
  // late: then the user asks again.
  const auto askUntil = [&](const auto& ask, const auto& condition) {
    for (int attempt = 0; attempt < 5; ++attempt) {
      EXPECT_TRUE(ask());
      if (waitFor(condition, 8s)) return true;
    }
    return false;
  };
  const auto goes = [&](const Client& client) {
    return askUntil([&] { return hide(client); }, [&] { return collapsed() && hidden(client); });
  };
  for (const Client& client : {gxkb, parcellite}) EXPECT_TRUE(goes(client)) << row();
  // Also those that do not answer can be moved.
  for (const Client& client : {copyq, volumeicon}) EXPECT_TRUE(goes(client)) << row();
  EXPECT_TRUE(askUntil([&] { return release(gxkb); },
                       [&] { return collapsed() && shown(gxkb) && hidden(parcellite); }))
      << row();
  EXPECT_TRUE(waitFor([&] { return excess().empty(); })) << excess() << row();
  good[0]->thaw();
  good[1]->thaw();
}

}  // namespace
}  // namespace tarnwick::test
