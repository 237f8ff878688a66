#include <signal.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

// Plain XEmbed clients that tell what happens to them.
class XEmbedTest : public StatusDesktopTest {
 protected:
  Program& startIcon(const QString& name, QStringList arguments = {}) {
    Program& program = desktop.start("fake_xembed_client", arguments << "--name" << name);
    EXPECT_TRUE(waitFor([&] { return item(name).has_value(); })) << name << '\n' << row();
    return program;
  }

  std::optional<BarItem> item(const QString& title) {
    for (const BarItem& each : bar.items()) {
      if (each.title == title) return each;
    }
    return {};
  }

  // Straight alpha and colour of a pixel of the item's picture at one pixel per point, counted
  // from the icon's corner.
  QColor pixel(const QString& title, int x, int y) {
    const auto found = item(title);
    if (!found) return {};
    const int width = static_cast<int>(found->frame.width());
    const int height = static_cast<int>(found->frame.height());
    const auto picture = bar.render(found->id, static_cast<uint>(width), static_cast<uint>(height));
    const int left = (width - iconSide) / 2 + x;
    const int top = (height - iconSide) / 2 + y;
    const auto offset = 4 * (static_cast<qsizetype>(top) * width + left);
    if (picture.rgba.size() < offset + 4) return {};
    const auto part = [&](qsizetype i) { return static_cast<uchar>(picture.rgba[offset + i]); };
    return QColor(part(0), part(1), part(2), part(3));
  }

  void xdotool(const QString& commands) {
    EXPECT_TRUE(desktop.start("xdotool", commands.split(' ')).waitForEnd());
  }

  static constexpr int iconSide = 18;
};

std::string said(const Program& program) {
  return program.output().toStdString();
}

int lines(const Program& program, const QByteArray& text) {
  return static_cast<int>(program.output().split('\n').count(text));
}

TEST_F(XEmbedTest, PicturesOfEveryDepthAreReadFarOffScreen) {
  startBar();
  startIcon("alpha", {"--colour", "80400000"});
  startIcon("opaque", {"--depth", "24", "--colour", "2266cc"});
  startIcon("blended", {"--depth", "24", "--colour", "2266cc", "--parent-relative"});
  Program& repainted = startIcon("repainted", {"--colour", "ff00ff00"});
  bar.addItem("far", 16'000);
  const BarItems before = bar.leftToRight();
  for (const BarItem& each : before) {
    if (each.kind == "xembed") bar.drag(each, -20'000);
  }
  struct Case {
    const char* icon;
    QRgb middle;
    int cornerAlpha;
  };
  repainted.write("colour ff112233");
  for (const Case& each : {Case{"alpha", 0x80400000, 0}, Case{"opaque", 0xff2266cc, 255},
                           Case{"blended", 0xff2266cc, 0}, Case{"repainted", 0xff112233, 0}}) {
    EXPECT_TRUE(waitFor([&] { return pixel(each.icon, 9, 9) == QColor::fromRgba(each.middle); }))
        << each.icon << ' ' << pixel(each.icon, 9, 9).name(QColor::HexArgb);
    EXPECT_EQ(pixel(each.icon, 0, 0).alpha(), each.cornerAlpha) << each.icon;
    EXPECT_LT(item(each.icon)->frame.right(), -10'000) << row();
  }
}

TEST_F(XEmbedTest, IconsHaveTheBarsSizeAndFollowTheirClientsWish) {
  startBar();
  Program& large = startIcon("large", {"--size", "273"});
  EXPECT_EQ(item("large")->frame.width(), iconSide + 8);
  EXPECT_TRUE(waitFor([&] { return lines(large, "docked 18 18") == 1; })) << said(large);

  Program& shy = desktop.start("fake_xembed_client", {"--unmapped", "--name", "shy"});
  EXPECT_TRUE(waitFor([&] { return lines(shy, "docked 18 18") == 1; }));
  EXPECT_FALSE(item("shy"));
  shy.write("map");
  EXPECT_TRUE(waitFor([&] { return item("shy").has_value(); })) << row();
  shy.write("title changed");
  EXPECT_TRUE(waitFor([&] { return item("changed").has_value(); })) << row();
  shy.write("unmap");
  EXPECT_TRUE(waitFor([&] { return !item("changed"); })) << row();
}

TEST_F(XEmbedTest, PressClicksTheIconOnScreenAndLeavesItWhereItWas) {
  struct Case {
    const char* scale;
    const char* size;
    // At the left end of the bar, flush with its lower edge; in pixels.
    const char* press;
    const char* release;
  };
  for (const Case& each : {Case{"1", "docked 18 18", "button 1 press 9 9 root 9 15 state 0",
                                "button 1 release 9 9 root 9 15 state 256"},
                           Case{"2", "docked 36 36", "button 1 press 18 18 root 18 30 state 0",
                                "button 1 release 18 18 root 18 30 state 256"}}) {
    desktop.setVariable("QT_SCALE_FACTOR", each.scale);
    Program& program = startBar();
    Program& icon = startIcon("pressed");
    EXPECT_TRUE(waitFor([&] { return lines(icon, each.size) == 1; })) << said(icon);
    bar.addItem("far", 16'000);
    bar.drag(*item("pressed"), -20'000);
    ASSERT_TRUE(waitFor([&] { return item("pressed")->frame.right() < 0; })) << row();
    bar.press(item("pressed")->id);
    EXPECT_TRUE(waitFor([&] { return lines(icon, each.release) == 1; })) << said(icon);
    EXPECT_TRUE(waitFor([&] { return lines(icon, "leave") == 1; })) << said(icon);
    EXPECT_EQ(lines(icon, each.press), 1) << said(icon);
    EXPECT_LT(icon.output().indexOf("enter"), icon.output().indexOf("button"));
    // The window is away again: a click where it stood is not the icon's.
    xdotool("mousemove 9 12 click 1");
    icon.write("title clicked");
    EXPECT_TRUE(waitFor([&] { return item("clicked").has_value(); })) << row();
    EXPECT_EQ(icon.output().count("button"), 2) << said(icon);
    bar.press(item("clicked")->id);
    EXPECT_TRUE(waitFor([&] { return lines(icon, each.release) == 2; })) << "while a menu may come";
    icon.kill();
    EXPECT_TRUE(program.terminate());
  }
}

TEST_F(XEmbedTest, TheHandClicksTheIconAndDragsItWithSuper) {
  startBar();
  Program& icon = startIcon("first");
  startIcon("second");
  const auto at = [&](const QString& title) {
    const QPoint centre = item(title)->frame.center().toPoint();
    return QString("mousemove %1 %2").arg(centre.x()).arg(centre.y());
  };
  ASSERT_TRUE(waitFor([&] { return lines(icon, "mapped") == 1; }));
  xdotool(at("first") + " click 1");
  EXPECT_TRUE(waitFor([&] {
    return lines(icon, "button 1 release 9 9 root " +
                           QByteArray::number(qRound(item("first")->centre())) + " 12 state 256") ==
           1;
  })) << said(icon);

  // With the locks on, which change the modifiers a grab sees.
  const QByteArray before = icon.output();
  xdotool("key Num_Lock key Caps_Lock");
  xdotool(at("first") + " keydown super mousedown 1 mousemove_relative 10 0 " + at("second") +
          " mousemove_relative 12 0 mouseup 1 keyup super");
  EXPECT_TRUE(waitFor([&] { return item("first")->centre() > item("second")->centre(); })) << row();
  EXPECT_FALSE(icon.output().mid(before.size()).contains("button")) << said(icon);
}

TEST_F(XEmbedTest, IconsComeBackToEveryNextBarOnce) {
  Program* program = &startBar();
  Program& one = startIcon("one");
  Program& two = startIcon("two");
  int docked = 1;
  for (const int signal : {SIGTERM, SIGKILL, SIGKILL, SIGTERM}) {
    ASSERT_TRUE(waitFor([&] { return lines(one, "mapped") == docked; })) << said(one);
    program->signal(signal);
    ASSERT_TRUE(program->waitForEnd());
    ASSERT_TRUE(waitFor([&] { return lines(one, "reparented to root") == docked; })) << said(one);
    EXPECT_EQ(lines(one, "unmapped"), docked) << "an icon without a tray stands on the screen";
    program = &startBar();
    ++docked;
    EXPECT_TRUE(waitFor([&] { return item("one") && item("two"); })) << row();
    EXPECT_TRUE(waitFor([&] { return lines(two, "docked 18 18") == docked; })) << said(two);
    EXPECT_EQ(bar.items().size(), 2U) << row();
  }
}

TEST_F(XEmbedTest, TrayIsGivenUpToAnotherManagerAndTakenBack) {
  startBar();
  Program& icon = startIcon("passed on");
  {
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> other(
        xcb_connect(qPrintable(desktop.display()), nullptr), xcb_disconnect);
    auto* server = other.get();
    const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> atom(
        xcb_intern_atom_reply(server, xcb_intern_atom(server, 0, 19, "_NET_SYSTEM_TRAY_S0"),
                              nullptr),
        std::free);
    ASSERT_TRUE(atom);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const auto window = xcb_generate_id(server);
    xcb_create_window(server, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0,
                      nullptr);
    xcb_set_selection_owner(server, window, atom->atom, XCB_CURRENT_TIME);
    xcb_flush(server);
    EXPECT_TRUE(waitFor([&] { return bar.items().empty(); })) << row();
    EXPECT_TRUE(waitFor([&] { return lines(icon, "reparented to root") == 1; })) << said(icon);
  }
  EXPECT_TRUE(waitFor([&] { return item("passed on").has_value(); })) << row();
}

}  // namespace
}  // namespace tarnwick::test
