#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "harness/desktop_test.h"

namespace tarnwick::test {

// Third-party clients from the distribution, by the application identifier of their items.
struct Client {
  const char* program;
  const char* bundleId;
};
inline constexpr Client copyq{"copyq", "com.github.hluk.copyq"};    // StatusNotifierItem, Qt
inline constexpr Client gxkb{"gxkb", "gxkb"};                       // StatusNotifierItem, ayatana
inline constexpr Client diodon{"diodon", "diodon"};                 // StatusNotifierItem, ayatana
inline constexpr Client parcellite{"parcellite", "parcellite"};     // XEmbed, GTK 2
inline constexpr Client remmina{"remmina", "org.remmina.Remmina"};  // StatusNotifierItem, ayatana
inline constexpr Client volumeicon{"volumeicon", "volumeicon"};     // XEmbed, GTK 3

// A desktop with the bar, clients and the utility on it, and what can be said about their items.
class StatusDesktopTest : public DesktopTest {
 protected:
  void grantUtility() {
    desktop.grant(PrivateDesktop::pathOf("tarnwick"), {"accessibility", "screen-capture"});
  }

  Program& startBar() {
    desktop.grant("/proc/self/exe", {"accessibility", "screen-capture"});
    Program& program = desktop.start("tarnwick-bar");
    // On the screen as well, where it can be clicked.
    EXPECT_TRUE(
        waitFor([&] { return bar.running() && !desktop.windowFrame("Menu Bar").isEmpty(); }));
    return program;
  }

  std::vector<Program*> startClients(const std::vector<Client>& clients) {
    std::vector<Program*> programs;
    for (const Client& client : clients) {
      programs.push_back(&desktop.start(client.program));
    }
    for (const Client& client : clients) {
      EXPECT_TRUE(waitFor([&] { return shown(client); })) << client.program << '\n' << row();
    }
    return programs;
  }

  Program& startUtility() {
    Program& program = desktop.start("tarnwick");
    EXPECT_TRUE(waitFor([&] { return native("tarnwick.boundary").has_value(); })) << row();
    return program;
  }

  void hideInDefaults(const std::vector<Client>& clients) {
    nlohmann::json hidden = nlohmann::json::array();
    for (const Client& client : clients) {
      hidden.push_back(client.bundleId);
    }
    desktop.writeDefaults({{"hiddenBundleIds", hidden}});
  }

  bool hide(const Client& client) { return desktop.activateAction("hide", client.bundleId); }
  bool release(const Client& client) { return desktop.activateAction("release", client.bundleId); }

  // All its items are there, and beyond the left end.
  bool hidden(const Client& client) {
    const BarItems items = bar.itemsOf(client.bundleId);
    return !items.empty() && std::all_of(items.begin(), items.end(),
                                         [](const BarItem& item) { return item.centre() <= 0; });
  }

  // All its items are there, and wholly inside the bar.
  bool shown(const Client& client) {
    const BarItems items = bar.itemsOf(client.bundleId);
    const QRectF frame = bar.frame();
    return !items.empty() && std::all_of(items.begin(), items.end(), [&](const BarItem& item) {
      return item.frame.width() > 0 && item.frame.left() >= frame.left() &&
             item.frame.right() <= frame.right();
    });
  }

  std::optional<BarItem> native(const QString& autosaveName) { return bar.find(autosaveName); }
  double boundaryLength() {
    const auto item = native("tarnwick.boundary");
    return item ? item->frame.width() : 0;
  }
  // A pass ends with a long boundary.
  bool collapsed() { return boundaryLength() == 16000; }

  // Items from left to right, by what they are known under; those of `except` left out.
  QStringList order(const std::vector<Client>& except = {}) {
    QStringList names;
    for (const BarItem& item : bar.leftToRight()) {
      if (std::none_of(except.begin(), except.end(),
                       [&](const Client& client) { return item.bundleId == client.bundleId; })) {
        names += item.bundleId + "/" + item.hint;
      }
    }
    return names;
  }

  std::string row() { return describe(bar.leftToRight()).toStdString(); }

  BarProxy bar{desktop.bus()};
};

}  // namespace tarnwick::test
