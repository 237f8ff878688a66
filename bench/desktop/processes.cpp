#include <map>
#include <nlohmann/json.hpp>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {

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

}  // namespace tarnwick::bench
