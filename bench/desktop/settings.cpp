#include <QDBusMessage>
#include <QVariantMap>
#include <nlohmann/json.hpp>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {

namespace {

constexpr std::uint32_t cardColour = 0xfdfdfd;
constexpr int applications = 200;
constexpr int wheelSteps = 50;

void launchAgain(const PrivateDesktop& desktop) {
  auto call = QDBusMessage::createMethodCall("org.tarnwick.Tarnwick", "/org/tarnwick/Tarnwick",
                                             "org.freedesktop.Application", "Activate");
  call << QVariantMap();
  desktop.bus().send(call);
}

}  // namespace

// From launching the running utility again to the first pixels of a list of 200 applications, all
// of them hidden, so that each has a field for its group.
void settings() {
  std::vector<double> first;
  std::vector<double> later;
  std::vector<double> scrolled;
  for (int run = 0; run < 5; ++run) {
    Ground ground;
    auto hidden = nlohmann::json::array();
    for (int i = 0; i < applications; ++i) hidden.push_back("application" + std::to_string(i));
    ground.desktop.writeDefaults({{"hiddenBundleIds", hidden}});
    ground.startBar();
    const qint64 utility = ground.startUtility().pid();
    letPass(2s);
    for (int opening = 0; opening < 4; ++opening) {
      const ColourWatch watch(ground.desktop.display(), cardColour, 540);
      const auto start = Clock::now();
      launchAgain(ground.desktop);
      if (!waitFor([&] { return watch.seen().has_value(); })) fail("no settings");
      (opening == 0 ? first : later).push_back(milliseconds(*watch.seen() - start));
      letPass(500ms);
      if (opening == 0) {
        const QPoint middle = ground.desktop.windowFrame("Tarnwick").center();
        const double before = usageOf(utility).cpu;
        ground.desktop
            .start("xdotool",
                   {"mousemove", QString::number(middle.x()), QString::number(middle.y()), "click",
                    "--repeat", QString::number(wheelSteps), "--delay", "20", "5"})
            .waitForEnd();
        letPass(200ms);
        scrolled.push_back((usageOf(utility).cpu - before) / wheelSteps);
      }
      ground.desktop.start("xdotool", {"key", "ctrl+w"}).waitForEnd();
      if (!waitFor([&] { return ground.desktop.windowFrame("Tarnwick").isEmpty(); })) {
        fail("it stays open");
      }
      letPass(200ms);
    }
  }
  print({"settings window, 200 applications, for the first time", "ms", "150", 1}, first);
  print({"settings window, 200 applications, later", "ms", "150", 1}, later);
  print({"settings window, one step of the wheel, CPU time", "ms", "16", 1}, scrolled);
}

}  // namespace tarnwick::bench
