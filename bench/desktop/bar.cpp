#include <algorithm>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {

// From the call to the watcher, or from the signal of a change, until the icon's colour is on the
// screen.
void pixels() {
  Ground ground;
  ground.startBar();
  letPass(1s);
  const int y = static_cast<int>(ground.bar.frame().center().y());
  std::vector<double> times;
  std::vector<double> changes;
  for (std::uint32_t run = 0; run < 21; ++run) {
    const std::uint32_t colour = 0xc01040 + run * 5;
    const std::uint32_t changed = 0x10c040 + run * 5;
    const auto bus = ground.desktop.connect();
    Items client(*bus, 1, colour);
    const ColourWatch watch(ground.desktop.display(), colour, y);
    letPass(100ms);
    const auto start = Clock::now();
    client.registerAll();
    if (!waitFor([&] { return watch.seen().has_value(); })) fail("the icon is not shown");
    if (run > 0) times.push_back(milliseconds(*watch.seen() - start));

    letPass(300ms);
    const ColourWatch next(ground.desktop.display(), changed, y);
    letPass(100ms);
    const auto signalled = Clock::now();
    client.setColour(changed);
    if (!waitFor([&] { return next.seen().has_value(); })) fail("the new icon is not shown");
    if (run > 0) changes.push_back(milliseconds(*next.seen() - signalled));
  }
  print({"registration to pixels", "ms", "8", 2}, times);
  print({"NewIcon after a quiet time to pixels", "ms", "8", 2}, changes);
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

}  // namespace tarnwick::bench
