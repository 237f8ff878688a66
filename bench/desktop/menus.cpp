#include <algorithm>
#include <nlohmann/json.hpp>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"
#include "harness/x_screen.h"

namespace tarnwick::bench {

namespace {

// Windows past the window manager of one program, without the panel.
bool showsMenu(const QString& display, qint64 pid) {
  const auto popups = test::popups(display);
  return std::any_of(popups.begin(), popups.end(), [pid](const test::PopupWindow& popup) {
    return popup.pid == pid && popup.name != "Hidden apps";
  });
}

struct Subject {
  const char* program;
  const char* bundleId;
  QStringList arguments;
  int runs;
  const char* budget;
};

// From the press on the entry in the panel to the proxy menu on the screen.
std::vector<double> pressToMenu(const Subject& subject) {
  Ground ground;
  ground.startBar();
  ground.desktop.start(subject.program, subject.arguments);
  ground.desktop.writeDefaults({{"hiddenBundleIds", {subject.bundleId}}});
  ground.waitForItems(1);
  const qint64 utility = ground.startUtility().pid();
  const auto hidden = [&] {
    const auto items = ground.bar.itemsOf(subject.bundleId);
    return !items.empty() && items.front().centre() < 0;
  };
  if (!waitFor(hidden)) fail("the client is not hidden");
  std::vector<double> times;
  for (int run = 0; run < subject.runs; ++run) {
    ground.desktop.activateAction("toggle-panel");
    QPoint entry;
    if (!waitFor([&] {
          for (const auto& popup : test::popups(ground.desktop.display())) {
            if (popup.name == "Hidden apps") entry = popup.frame.center();
          }
          return !entry.isNull();
        })) {
      fail("no panel");
    }
    ground.desktop
        .start("xdotool", {"mousemove", QString::number(entry.x()), QString::number(entry.y())})
        .waitForEnd();
    letPass(300ms);
    ground.desktop.start("xdotool", {"click", "1"});
    const auto start = Clock::now();
    const auto shown =
        momentOf([&] { return showsMenu(ground.desktop.display(), utility); }, "no proxy menu");
    times.push_back(milliseconds(shown - start));
    letPass(300ms);
    ground.desktop.start("xdotool", {"key", "Escape"}).waitForEnd();
    if (!waitFor([&] { return !showsMenu(ground.desktop.display(), utility); })) {
      fail("the proxy menu stays open");
    }
  }
  return times;
}

}  // namespace

void menus() {
  const std::vector<Subject> subjects{
      {"copyq", "com.github.hluk.copyq", {}, 10, ""},
      {"diodon", "diodon", {}, 10, ""},
      {"gxkb", "gxkb", {}, 10, ""},
      {fakeClient, fakeClient, {}, 10, ""},
      {fakeClient, fakeClient, {"--menu-entries", "10000"}, 5, ""},
  };
  for (const Subject& subject : subjects) {
    std::string what = std::string("press to proxy menu, ") + subject.program;
    if (!subject.arguments.isEmpty()) what += ", 10,000 entries";
    print({what, "ms", subject.budget, 0}, pressToMenu(subject));
  }
  // The bar's own menu of a visible item.
  for (const char* entries : {"10", "10000"}) {
    Ground ground;
    const qint64 bar = ground.startBar().pid();
    ground.desktop.start(fakeClient, {"--menu-entries", entries});
    ground.waitForItems(1);
    letPass(1s);
    const QPointF at = ground.bar.items().front().frame.center();
    std::vector<double> times;
    for (int run = 0; run < 6; ++run) {
      ground.desktop
          .start("xdotool",
                 {"mousemove", QString::number(qRound(at.x())), QString::number(qRound(at.y()))})
          .waitForEnd();
      letPass(300ms);
      auto& click = ground.desktop.start("xdotool", {"click", "1"});
      const auto start = Clock::now();
      const auto shown =
          momentOf([&] { return showsMenu(ground.desktop.display(), bar); }, "no menu of the bar");
      click.waitForEnd();
      if (run > 0) times.push_back(milliseconds(shown - start));
      letPass(300ms);
      ground.desktop.start("xdotool", {"key", "Escape"}).waitForEnd();
      if (!waitFor([&] { return !showsMenu(ground.desktop.display(), bar); })) {
        fail("the menu stays open");
      }
    }
    const bool many = QString(entries) == "10000";
    print({std::string("click on an item to its menu, ") + (many ? "10,000" : "10") + " entries",
           "ms", many ? "150" : "", 0},
          times);
  }
}

}  // namespace tarnwick::bench
