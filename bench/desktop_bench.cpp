// Measures both programs on a desktop of its own and prints a table. The names of sections as
// arguments run only those; without any all are run.
#include <unistd.h>

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "adapters/bar/bar_accessibility.h"
#include "adapters/bar/bar_connection.h"
#include "adapters/bar/bar_snapshots.h"
#include "adapters/bar/bar_workspace.h"
#include "adapters/desktop/identity.h"
#include "adapters/qt/qt_application.h"
#include "adapters/qt/qt_main_loop.h"
#include "bench/desktop_probe.h"
#include "menubar/menu_bar_scanner.h"
#include "tests/desktop/harness/bar_proxy.h"
#include "tests/desktop/harness/private_desktop.h"
#include "tests/desktop/harness/wait.h"

namespace tarnwick::bench {
namespace {

using namespace std::chrono_literals;
using test::BarProxy;
using test::letPass;
using test::PrivateDesktop;
using test::Program;
using test::waitFor;

constexpr auto fakeClient = "fake_sni_client";

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what);
}

// A desktop with the bar on it.
struct Ground {
  Ground() {
    if (!desktop.failure().isEmpty()) fail(desktop.failure().toStdString());
    desktop.grant(PrivateDesktop::pathOf("tarnwick"), {"accessibility", "screen-capture"});
    desktop.grant("/proc/self/exe", {"accessibility", "screen-capture"});
  }

  Program& startBar() {
    Program& program = desktop.start("tarnwick-bar");
    if (!waitFor([&] { return bar.running(); })) fail("no bar");
    return program;
  }
  Program& startUtility() {
    Program& program = desktop.start("tarnwick");
    if (!waitFor([&] { return bar.find("tarnwick.boundary").has_value(); })) fail("no utility");
    return program;
  }
  void waitForItems(std::size_t count) {
    if (!waitFor([&] { return bar.items().size() == count; }, 60s)) fail("items are missing");
  }
  double boundaryLength() {
    const auto item = bar.find("tarnwick.boundary");
    return item ? item->frame.width() : 0;
  }

  PrivateDesktop desktop{{.screen = {1920, 1080}}};
  BarProxy bar{desktop.bus()};
};

// Asks again and again, every millisecond, without the event loop.
template <typename Condition>
Clock::time_point momentOf(Condition condition, const char* what) {
  const auto end = Clock::now() + 30s;
  while (!condition()) {
    if (Clock::now() > end) fail(what);
    usleep(1000);
  }
  return Clock::now();
}

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

// From the call to the watcher until the icon's colour is on the screen.
void pixels() {
  Ground ground;
  ground.startBar();
  letPass(1s);
  const int y = static_cast<int>(ground.bar.frame().center().y());
  std::vector<double> times;
  for (std::uint32_t run = 0; run < 21; ++run) {
    const std::uint32_t colour = 0xc01040 + run * 5;
    const auto bus = ground.desktop.connect();
    Items client(*bus, 1, colour);
    const ColourWatch watch(ground.desktop.display(), colour, y);
    letPass(100ms);
    const auto start = Clock::now();
    client.registerAll();
    if (!waitFor([&] { return watch.seen().has_value(); })) fail("the icon is not shown");
    if (run > 0) times.push_back(milliseconds(*watch.seen() - start));
  }
  print({"registration to pixels", "ms", "8", 2}, times);
}

// Memory and an idle minute, with five clients of other makers and one fake, one of them hidden.
void idle() {
  std::map<std::string, std::vector<double>> values;
  for (int run = 0; run < 3; ++run) {
    Ground ground;
    ground.desktop.writeDefaults({{"hiddenBundleIds", {"gxkb"}}});
    const qint64 bar = ground.startBar().pid();
    for (const char* client : {"copyq", "gxkb", "diodon", "parcellite", "volumeicon", fakeClient}) {
      ground.desktop.start(client);
    }
    ground.waitForItems(6);
    const qint64 utility = ground.startUtility().pid();
    if (!waitFor([&] { return ground.boundaryLength() == 16000; })) fail("no pass");
    letPass(12s);
    const Usage barBefore = usageOf(bar);
    const Usage utilityBefore = usageOf(utility);
    letPass(60s);
    const Usage barAfter = usageOf(bar);
    const Usage utilityAfter = usageOf(utility);
    const auto note = [&](const std::string& what, double ofBar, double ofUtility) {
      values[what + ", bar"].push_back(ofBar);
      values[what + ", utility"].push_back(ofUtility);
      values[what + ", both"].push_back(ofBar + ofUtility);
    };
    note("anonymous memory, MiB", barAfter.anonymous / 1024, utilityAfter.anonymous / 1024);
    note("memory (PSS), MiB", barAfter.proportional / 1024, utilityAfter.proportional / 1024);
    note("idle minute: wake-ups", static_cast<double>(barAfter.wakeUps - barBefore.wakeUps),
         static_cast<double>(utilityAfter.wakeUps - utilityBefore.wakeUps));
    note("idle minute: CPU time, ms", barAfter.cpu - barBefore.cpu,
         utilityAfter.cpu - utilityBefore.cpu);
  }
  const std::map<std::string, std::string> budgets{{"anonymous memory, MiB, both", "8"},
                                                   {"memory (PSS), MiB, both", "20"},
                                                   {"idle minute: wake-ups, both", "3"},
                                                   {"idle minute: CPU time, ms, both", "1"}};
  for (const auto& [what, measured] : values) {
    const auto budget = budgets.find(what);
    print({what, "", budget == budgets.end() ? "" : budget->second, 1}, measured);
  }
}

void startUp() {
  Ground ground;
  Display display(ground.desktop.display());
  display.watchMapping();
  std::vector<double> bars;
  std::vector<double> utilities;
  constexpr int runs = 11;  // the first finds nothing in the caches and does not count
  for (int run = 0; run < runs; ++run) {
    const auto start = Clock::now();
    Program& bar = ground.desktop.start("tarnwick-bar");
    if (!display.waitForWideWindow()) fail("no dock");
    bars.push_back(milliseconds(Clock::now() - start));
    letPass(500ms);
    if (run + 1 < runs && !bar.terminate()) fail("the bar does not end");
  }
  for (int run = 0; run < runs; ++run) {
    const auto start = Clock::now();
    Program& utility = ground.desktop.start("tarnwick");
    const auto shown = [&] {
      const auto handle = ground.bar.find("tarnwick.handle");
      return handle && handle->frame.width() > 0;
    };
    utilities.push_back(milliseconds(momentOf(shown, "no handle") - start));
    letPass(500ms);
    if (!utility.terminate()) fail("the utility does not end");
    if (!waitFor([&] { return !shown(); })) fail("the handle stays");
  }
  bars.erase(bars.begin());
  utilities.erase(utilities.begin());
  print({"bar: start to dock mapped", "ms", "60", 1}, bars);
  print({"utility: start to handle in a running bar", "ms", "100", 1}, utilities);
}

// One client that signals a new icon 1,000 times a second.
void storm() {
  for (const bool changes : {false, true}) {
    Ground ground;
    const qint64 bar = ground.startBar().pid();
    QStringList arguments{"--storm", "1000"};
    if (changes) arguments += "--storm-changes";
    ground.desktop.start(fakeClient, arguments);
    ground.waitForItems(1);
    letPass(1s);
    std::vector<double> shares;
    for (int run = 0; run < 5; ++run) {
      const auto start = Clock::now();
      const double before = usageOf(bar).cpu;
      letPass(3s);
      shares.push_back(100 * (usageOf(bar).cpu - before) / milliseconds(Clock::now() - start));
    }
    print({std::string("1,000 NewIcon a second, ") +
               (changes ? "another icon each time" : "always the same icon"),
           "% of a core", "3", 2},
          shares);
  }
}

// 500 items of one connection, registered at once, until all are listed with a frame.
void burst() {
  constexpr int count = 500;
  std::vector<double> times;
  std::vector<double> memory;
  for (int run = 0; run < 5; ++run) {
    Ground ground;
    const qint64 bar = ground.startBar().pid();
    letPass(1s);
    const double before = usageOf(bar).anonymous;
    const auto bus = ground.desktop.connect();
    Items client(*bus, count, 0xc01040);
    const auto start = Clock::now();
    client.registerAll();
    const auto all = [&] {
      const auto items = ground.bar.items();
      return items.size() == count && std::all_of(items.begin(), items.end(), [](const auto& item) {
               return item.frame.width() > 0 && item.hint.startsWith("bench");
             });
    };
    if (!waitFor(all)) fail("items are missing");
    times.push_back(milliseconds(Clock::now() - start));
    letPass(2s);
    memory.push_back((usageOf(bar).anonymous - before) / count);
  }
  print({"500 items at once, until all are laid out", "ms", "500", 0}, times);
  print({"anonymous memory of each of them", "KiB", "20", 1}, memory);
}

const std::vector<std::pair<std::string, std::function<void()>>> sections{
    {"pass", pass},   {"scan", scan},   {"pixels", pixels}, {"startup", startUp},
    {"storm", storm}, {"burst", burst}, {"idle", idle}};

}  // namespace
}  // namespace tarnwick::bench

int main(int argc, char** argv) {
  using namespace tarnwick::bench;
  // This process draws nothing on the desktop it measures.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const std::vector<std::string> wanted(argv + 1, argv + argc);
  for (const std::string& name : wanted) {
    if (std::none_of(sections.begin(), sections.end(),
                     [&](const auto& section) { return section.first == name; })) {
      std::fprintf(stderr, "usage: %s [pass|scan|pixels|startup|storm|burst|idle ...]\n", argv[0]);
      return 2;
    }
  }
  int failed = 0;
  printHeader();
  for (const auto& [name, measure] : sections) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), name) == wanted.end()) continue;
    try {
      measure();
    } catch (const std::exception& problem) {
      std::fprintf(stderr, "%s: %s\n", name.c_str(), problem.what());
      ++failed;
    }
  }
  return failed == 0 ? 0 : 1;
}
