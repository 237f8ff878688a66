#include <algorithm>
#include <cmath>
#include <thread>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"
#include "common/identity/identity.h"
#include "core/menubar/menu_bar_scanner.h"
#include "utility/bar_client/bar_accessibility.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"
#include "utility/bar_client/bar_workspace.h"
#include "utility/loop/qt_application.h"
#include "utility/loop/qt_main_loop.h"

namespace tarnwick::bench {

// From the request to hide an application until the boundary is long again. Nothing is asked of
// the bar until shortly before that can be so.
void pass() {
  for (const auto& [drags, runs] : {std::pair(1, 10), std::pair(5, 5), std::pair(20, 5)}) {
    Ground ground;
    ground.startBar();
    ground.desktop.start(fakeClient, {"--items", QString::number(drags)});
    ground.waitForItems(static_cast<std::size_t>(drags));
    ground.startUtility();
    letPass(1500ms);  // the first pass of a run
    const double least = 250 + drags * 246;
    const auto itemsRightOf = [&](double x) {
      const auto items = ground.bar.itemsOf(fakeClient);
      return std::count_if(items.begin(), items.end(),
                           [x](const auto& item) { return item.centre() > x; });
    };
    std::vector<double> times;
    std::vector<double> ratios;
    for (int run = 0; run < runs; ++run) {
      const auto start = Clock::now();
      if (!ground.desktop.activateAction("hide", fakeClient)) fail("nobody hides");
      std::this_thread::sleep_until(start + std::chrono::microseconds(std::lround(least * 980)));
      if (ground.boundaryLength() != 2) fail("the pass ended early");
      const auto end = momentOf([&] { return ground.boundaryLength() == 16000; }, "no pass");
      times.push_back(milliseconds(end - start));
      ratios.push_back(times.back() / least);
      if (itemsRightOf(0) != 0) fail("an item is still in the bar");
      ground.desktop.activateAction("release", fakeClient);
      const auto released = [&] {
        const auto boundary = ground.bar.find("tarnwick.boundary");
        return boundary && boundary->frame.width() == 2 &&
               itemsRightOf(boundary->frame.right()) == drags;
      };
      if (!waitFor(released, 60s)) fail("no release");
      letPass(500ms);  // the last item's drag ends
    }
    const std::string what = "stow pass, drags: " + std::to_string(drags);
    print({what, "ms", "", 1}, times);
    print({what + ", over 250 ms + drags x 246 ms", "", "1.03", 4}, ratios);
  }
}

// The utility's own scanner, in this process.
void scan() {
  for (const int count : {10, 100, 500}) {
    Ground ground;
    ground.startBar();
    constexpr int clients = 10;
    for (int i = 0; i < clients; ++i) {
      ground.desktop.start(fakeClient, {"--items", QString::number(count / clients)});
    }
    ground.waitForItems(static_cast<std::size_t>(count));
    letPass(1s);
    QtMainLoop loop;
    QtApplication application;
    desktop::IdentityResolver identities;
    const auto bus = ground.desktop.connect();
    BarConnection connection(loop, *bus);
    BarSnapshots snapshots(connection);
    BarAccessibility accessibility(connection, snapshots);
    BarWorkspace workspace(connection, snapshots, identities, "bench");
    const MenuBarScanner scanner(accessibility, workspace, application);
    if (!waitFor([&] { return accessibility.isProcessTrusted(); })) fail("not trusted");
    if (scanner.scan().size() != static_cast<std::size_t>(count)) fail("a scan misses items");
    std::vector<double> calls;
    std::vector<double> scans;
    for (int run = 0; run < 200; ++run) {
      auto start = Clock::now();
      ground.bar.call("Items");
      calls.push_back(milliseconds(Clock::now() - start));
      start = Clock::now();
      scanner.scan();
      scans.push_back(milliseconds(Clock::now() - start));
      letPass(2ms);
    }
    const std::string items = std::to_string(count) + " items";
    print({"Items() alone, " + items, "ms", "", 3}, calls);
    print({"scan of " + items, "ms", count == 100 ? "1" : "", 3}, scans);
    print({"the same, 95th percentile", "ms", "", 3}, {quantile(scans, 0.95)});
  }
}

}  // namespace tarnwick::bench
