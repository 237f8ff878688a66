#include <QColor>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

class AppearanceTest : public StatusDesktopTest {
 protected:
  bool isDark(QPoint at) { return desktop.screenshot().pixelColor(at).lightness() < 128; }
};

TEST_F(AppearanceTest, BarAndPanelFollowTheDesktopsColourScheme) {
  Program& portal = desktop.start("fake_portal", {"1"});
  ASSERT_TRUE(waitFor([&] { return desktop.ownerOf("org.freedesktop.portal.Desktop") != 0; }));
  grantUtility();
  startBar();
  startUtility();
  ASSERT_TRUE(waitFor([&] { return native("tarnwick.handle").has_value(); }));
  desktop.click(native("tarnwick.handle")->frame.center());
  QRect panel;
  ASSERT_TRUE(waitFor([&] {
    panel = desktop.windowFrame("Hidden apps");
    return !panel.isEmpty();
  }));
  const QPoint inPanel(panel.left() + 12, panel.center().y());  // beside the text
  const QPoint inBar(640, 12);
  EXPECT_TRUE(waitFor([&] { return isDark(inBar) && isDark(inPanel); }));
  portal.write("2");
  EXPECT_TRUE(waitFor([&] { return !isDark(inBar) && !isDark(inPanel); }));
  portal.write("1");
  EXPECT_TRUE(waitFor([&] { return isDark(inBar) && isDark(inPanel); }));
}

}  // namespace
}  // namespace tarnwick::test
