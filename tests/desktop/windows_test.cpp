#include <QSettings>

#include "harness/status_desktop_test.h"
#include "harness/x_screen.h"

namespace tarnwick::test {
namespace {

using Numbers = std::vector<std::uint32_t>;

// The settings window among others, as the window manager has it.
class WindowsTest : public StatusDesktopTest {
 protected:
  void open() {
    ASSERT_TRUE(desktop.start("tarnwick").waitForEnd());
    ASSERT_TRUE(waitFor([&] { return !frame().isEmpty(); }));
  }
  QRect frame() { return desktop.windowFrame("Tarnwick"); }
  std::uint32_t windowOf(const QString& title) {
    Program& search =
        desktop.start("xdotool", {"search", "--onlyvisible", "--name", '^' + title + '$'});
    search.waitForEnd();
    return search.output().split('\n').first().toUInt();
  }
  Numbers numbers(const char* property, std::uint32_t window = 0) {
    return numbersOf(desktop.display(), window, property);
  }
  void ask(const char* request, const std::array<std::uint32_t, 5>& data, std::uint32_t window) {
    askWindowManager(desktop.display(), window, request, data);
  }
  void add(const char* state, std::uint32_t window) {
    ask("_NET_WM_STATE", {1, atomOf(desktop.display(), state)}, window);
  }
  // Active, in sight, and above every other window of an application.
  bool isInFront(std::uint32_t window) {
    const Numbers stacked = numbers("_NET_CLIENT_LIST_STACKING");
    const auto place = std::find(stacked.begin(), stacked.end(), window);
    return numbers("_NET_ACTIVE_WINDOW") == Numbers{window} && !frame().isEmpty() &&
           std::find(stacked.begin(), place, windowOf("Privacy")) != place;
  }
};

TEST_F(WindowsTest, SettingsReachTheUserWhereverTheyAre) {
  startBar();
  startUtility();
  bar.call("ShowPane", {"privacy"});
  ASSERT_TRUE(waitFor([&] { return !desktop.windowFrame("Privacy").isEmpty(); }));
  open();
  const std::uint32_t settings = windowOf("Tarnwick");
  ASSERT_TRUE(waitFor([&] { return isInFront(settings); }));

  for (const char* away : {"_NET_SHOWING_DESKTOP", "_NET_CURRENT_DESKTOP"}) {
    ask("_NET_SHOWING_DESKTOP", {0}, 0);
    ask(away, {1}, 0);
    ASSERT_TRUE(waitFor([&] { return frame().isEmpty(); })) << away;
    letPass(std::chrono::milliseconds(200));
    EXPECT_TRUE(frame().isEmpty()) << "it does not come back by itself: " << away;
  }
  open();
  EXPECT_TRUE(waitFor([&] { return numbers("_NET_ACTIVE_WINDOW") == Numbers{settings}; }));
  EXPECT_EQ(numbers("_NET_CURRENT_DESKTOP"), Numbers{1}) << "the user stays where he is";
  ask("_NET_CURRENT_DESKTOP", {0}, 0);
  ASSERT_TRUE(waitFor([&] { return frame().isEmpty(); }));
  open();

  const std::uint32_t privacy = windowOf("Privacy");
  add("_NET_WM_STATE_FULLSCREEN", privacy);
  ask("_NET_ACTIVE_WINDOW", {2}, privacy);
  ASSERT_TRUE(waitFor([&] { return desktop.windowFrame("Privacy").size() == QSize(1280, 800); }));
  ASSERT_TRUE(waitFor([&] { return !isInFront(settings); }));
  open();
  EXPECT_TRUE(waitFor([&] { return isInFront(settings); }));
  EXPECT_EQ(desktop.windowFrame("Privacy").size(), QSize(1280, 800));
}

TEST_F(WindowsTest, PanesOfTheBarReachTheUserToo) {
  startBar();
  const auto show = [this](const char* pane) { bar.call("ShowPane", {pane}); };
  // The bar itself is called like the other pane.
  const auto active = [this] { return numbers("_NET_ACTIVE_WINDOW"); };
  for (const char* pane : {"privacy", "menu-bar"}) {
    SCOPED_TRACE(pane);
    const Numbers before = active();
    show(pane);
    ASSERT_TRUE(waitFor([&] { return active() != before && active() != Numbers{0}; }));
    const Numbers window = active();
    const auto isHere = [&] {
      return active() == window && numbers("WM_STATE", window[0]).front() == 1 &&
             numbers("_NET_WM_DESKTOP", window[0]) == numbers("_NET_CURRENT_DESKTOP");
    };
    ask("WM_CHANGE_STATE", {3}, window[0]);
    ASSERT_TRUE(waitFor([&] { return !isHere(); }));
    show(pane);
    EXPECT_TRUE(waitFor(isHere)) << "minimised";
    ask("_NET_CURRENT_DESKTOP", {numbers("_NET_CURRENT_DESKTOP")[0] == 0 ? 1U : 0U}, 0);
    ASSERT_TRUE(waitFor([&] { return !isHere(); }));
    show(pane);
    EXPECT_TRUE(waitFor(isHere)) << "on another desktop";
  }
}

TEST_F(WindowsTest, ClassesAreThoseOfTheDesktopEntries) {
  startBar();
  startUtility();
  open();
  for (const auto& [entry, title] :
       {std::pair("Tarnwick", "Tarnwick"), std::pair("MenuBar", "Menu Bar")}) {
    const QString file = QStringLiteral(TARNWICK_CATALOGUES "/../data/org.tarnwick.%1.desktop");
    const QSettings settings(file.arg(entry), QSettings::IniFormat);
    const QString name = settings.value("Desktop Entry/StartupWMClass").toString();
    Program& search = desktop.start("xdotool", {"search", "--class", '^' + name + '$'});
    search.waitForEnd();
    EXPECT_TRUE(search.output().split('\n').contains(QByteArray::number(windowOf(title)))) << title;
  }
}

TEST_F(WindowsTest, SettingsAreCentredWithTheirFrameAndKeepTheirSize) {
  startBar();
  startUtility();
  open();
  const std::uint32_t settings = windowOf("Tarnwick");
  ASSERT_TRUE(waitFor([&] { return numbers("_NET_FRAME_EXTENTS", settings).size() == 4; }));
  const Numbers borders = numbers("_NET_FRAME_EXTENTS", settings);
  const auto border = [&](std::size_t side) { return static_cast<int>(borders[side]); };
  // Between the bar and the lower edge.
  const auto isCentred = [&] {
    const QRect framed = frame().marginsAdded({border(0), border(2), border(1), border(3)});
    return (framed.center() - QRect(0, 24, 1280, 776).center()).manhattanLength() <= 1;
  };
  EXPECT_TRUE(waitFor(isCentred)) << frame().x() << ' ' << frame().y();

  // What no window manager may make of it, though this one offers it.
  const auto isNormal = [&] {
    const Numbers states = numbers("_NET_WM_STATE", settings);
    return numbers("WM_STATE", settings).front() == 1 &&
           std::none_of(states.begin(), states.end(), [this](std::uint32_t state) {
             return state == atomOf(desktop.display(), "_NET_WM_STATE_FULLSCREEN") ||
                    state == atomOf(desktop.display(), "_NET_WM_STATE_MAXIMIZED_VERT");
           });
  };
  const struct {
    const char* request;
    std::array<std::uint32_t, 5> data;
    const char* told;  // the property that says so
    int changes;       // openbox itself refuses one direction of a window of one size
  } cases[] = {
      {"WM_CHANGE_STATE", {3}, "WM_STATE", 2},
      {"_NET_WM_STATE",
       {1, atomOf(desktop.display(), "_NET_WM_STATE_FULLSCREEN")},
       "_NET_WM_STATE",
       2},
      {"_NET_WM_STATE",
       {1, atomOf(desktop.display(), "_NET_WM_STATE_MAXIMIZED_VERT")},
       "_NET_WM_STATE",
       1},
  };
  for (const auto& c : cases) {
    PropertyWatch watch(desktop.display(), settings, c.told);
    ask(c.request, c.data, settings);
    EXPECT_TRUE(waitFor([&] { return watch.changes() >= c.changes && isNormal() && isCentred(); }))
        << c.request << ' ' << c.data[1] << ' ' << watch.changes();
    EXPECT_EQ(frame().size(), QSize(460, 640));
  }
}

}  // namespace
}  // namespace tarnwick::test
