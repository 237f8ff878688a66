#include <memory>

#include "tests/desktop/harness/accessible_tree.h"
#include "tests/desktop/harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

constexpr auto panelRow = "Open the panel";
constexpr auto panelKey = "KeyboardShortcuts_togglePanel";

// The settings' section of shortcuts, typed into.
class RecorderTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    tree = std::make_unique<AccessibleTree>(desktop);
    grantUtility();
    startBar();
    startUtility();
    Program& second = desktop.start("tarnwick");
    ASSERT_TRUE(second.waitForEnd());
    ASSERT_TRUE(waitFor([&] { return !frame().isEmpty(); }));
  }

  QRect frame() { return desktop.windowFrame("Tarnwick"); }
  bool panelIsShown() { return !desktop.windowFrame("Hidden apps").isEmpty(); }
  void keys(const QString& name) {
    ASSERT_TRUE(desktop.start("xdotool", {"key", name}).waitForEnd());
  }
  QString shownIn(const QString& title) {
    const auto field = tree->find("tarnwick", title, "text");
    return field ? field->text : QString();
  }
  bool stored() { return desktop.readDefaults().contains(panelKey); }

  // Scrolls the field into sight and clicks on it.
  void record(const QString& title) {
    QRect place;
    ASSERT_TRUE(waitFor([&] {
      const auto field = tree->find("tarnwick", title, "text");
      if (!field) return false;
      place = tree->frameOf(*field);
      if (frame().contains(place)) return true;
      desktop.click(frame().center(), place.bottom() > frame().bottom() ? 5 : 4);
      return false;
    }));
    desktop.click(place.center() - QPoint(place.width() / 4, 0));
    ASSERT_TRUE(waitFor([&] {
      const auto field = tree->find("tarnwick", title, "text");
      return field && tree->has(*field, AccessibleTree::State::focused);
    }));
  }

  std::unique_ptr<AccessibleTree> tree;
};

TEST_F(RecorderTest, RecordsWhatMayBeAShortcutAndClearsIt) {
  record(panelRow);
  keys("k");
  keys("F5");
  ASSERT_TRUE(waitFor([&] { return shownIn(panelRow) == "F5"; })) << qPrintable(shownIn(panelRow));
  EXPECT_TRUE(waitFor([&] { return stored(); }));
  EXPECT_FALSE(panelIsShown());
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
  keys("F5");
  EXPECT_TRUE(waitFor([&] { return !panelIsShown(); }));

  record(panelRow);
  keys("F5");  // which is only recorded again
  record(panelRow);
  keys("Escape");
  EXPECT_FALSE(panelIsShown());
  EXPECT_EQ(shownIn(panelRow), "F5");
  record(panelRow);
  keys("BackSpace");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow).isEmpty() && !stored(); }));
  keys("super+Down");
  EXPECT_TRUE(waitFor([&] { return shownIn(panelRow) == "⌘↓"; }));
  keys("super+Down");
  EXPECT_TRUE(waitFor([&] { return panelIsShown(); }));
}

}  // namespace
}  // namespace tarnwick::test
