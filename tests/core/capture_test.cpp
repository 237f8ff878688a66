#include <gtest/gtest.h>

#include <chrono>
#include <initializer_list>

#include "core/capture/bitmap_analysis.h"
#include "core/capture/status_icon_capturer.h"
#include "tests/core/fake_capture.h"
#include "tests/core/fake_main_loop.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::bitmapOf;
using test::FakeCapture;
using test::FakeMainLoop;
using Pixel = std::array<std::uint8_t, 4>;

using Windows = std::vector<CapturableWindow>;

constexpr Pixel clear{0, 0, 0, 0};

TEST(BitmapAnalysisTest, MonochromeLooksAtCountedPixelsOnly) {
  struct Case {
    const char* name;
    Pixel pixel;
    bool expected;
  };
  const Case cases[] = {
      {"transparent", clear, true},
      {"grey", {120, 120, 120, 255}, true},
      {"spread of 40", {140, 120, 100, 255}, true},
      {"spread of 41", {141, 120, 100, 255}, false},
      {"one coloured pixel", {200, 40, 40, 255}, false},
      {"coloured but alpha 32", {32, 0, 0, 32}, true},
      {"alpha 33 with little colour", {33, 0, 0, 33}, true},
      {"alpha 45 with colour", {45, 0, 0, 45}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(isMonochrome(bitmapOf(2, {clear, {9, 9, 9, 255}, c.pixel, clear})), c.expected);
  }
  EXPECT_FALSE(isMonochrome({}));
  EXPECT_FALSE(isMonochrome({2, 2, {1, 2, 3}})) << "fewer bytes than its size needs";
}

TEST(BitmapAnalysisTest, TrimsToPixelsAboveTheThreshold) {
  const Pixel faint{0, 0, 0, 16};
  const Pixel seen{1, 2, 3, 17};
  const Pixel other{4, 5, 6, 255};
  // faint at the corners; visible from (1,1) to (2,2)
  const auto bitmap = bitmapOf(4, {faint, clear, clear, faint, clear, seen, clear, clear, clear,
                                   clear, other, clear, faint, clear, clear, faint});
  EXPECT_EQ(trimmingTransparentBorder(bitmap), bitmapOf(2, {seen, clear, clear, other}));
  EXPECT_EQ(trimmingTransparentBorder(bitmapOf(2, {faint, clear})), std::nullopt);
  EXPECT_EQ(trimmingTransparentBorder({}), std::nullopt);
  const auto full = bitmapOf(1, {other});
  EXPECT_EQ(trimmingTransparentBorder(full), full);
}

class CapturerTest : public testing::Test {
 protected:
  static MenuBarItemInfo item(const std::string& bundleId, double x) {
    return {bundleId, bundleId, 1, {}, {x, 0, 20, 24}, std::nullopt};
  }
  void capture(std::vector<MenuBarItemInfo> items) {
    capturer->captureAll(std::move(items));
    loop.advance(1s);
  }

  FakeMainLoop loop;
  FakeCapture desktop{loop};
  std::shared_ptr<StatusIconCapturer> capturer =
      std::make_shared<StatusIconCapturer>(loop, desktop, desktop);
};

TEST_F(CapturerTest, MatchesItemsToWindowsByTheirLeftEdges) {
  struct Case {
    const char* name;
    std::vector<CapturableWindow> windows;
    std::vector<std::uint64_t> captured;
  };
  const Case cases[] = {
      {"exact", {{1, {100, 0, 20, 24}}}, {1}},
      {"15 away", {{1, {85, 0, 20, 24}}}, {1}},
      {"15.5 away", {{1, {115.5, 0, 20, 24}}}, {}},
      {"nearest", {{1, {90, 0, 20, 24}}, {2, {103, 0, 20, 24}}}, {2}},
      {"as near: the first", {{7, {95, 0, 20, 24}}, {2, {105, 0, 20, 24}}}, {7}},
      {"above the top", {{1, {100, -0.5, 20, 24}}}, {}},
      {"not at the top", {{1, {100, 0.5, 20, 24}}, {2, {110, 0, 20, 60}}}, {2}},
      {"too high", {{1, {100, 0, 20, 60.5}}}, {}},
      {"none", {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    desktop.captured.clear();
    desktop.list = c.windows;
    capture({item("org.a", 100)});
    std::vector<std::uint64_t> ids;
    for (const auto& request : desktop.captured) ids.push_back(request.window);
    EXPECT_EQ(ids, c.captured);
  }
}

TEST_F(CapturerTest, CapturesWholePointsTwiceAndShowsHalfThePixels) {
  desktop.list = Windows{{1, {100, 0, 22.5, 24}}};
  desktop.pictures[1] = bitmapOf(44, std::vector<Pixel>(44 * 48, Pixel{0, 0, 0, 255}));
  capture({item("org.a", 100)});
  ASSERT_EQ(desktop.captured.size(), 1u);
  EXPECT_EQ(desktop.captured[0].width, 44);
  EXPECT_EQ(desktop.captured[0].height, 48);
  EXPECT_EQ(capturer->cachedIcon("org.a")->size, (Size{22, 24}));
  EXPECT_TRUE(capturer->isMonochromeIcon("org.a"));
  desktop.pictures[1].rgba[0] = 200;
  capture({item("org.a", 100)});
  EXPECT_FALSE(capturer->isMonochromeIcon("org.a")) << "replaced with the picture";

  // After a restart the file gives the same picture.
  const auto restarted = std::make_shared<StatusIconCapturer>(loop, desktop, desktop);
  EXPECT_EQ(*restarted->cachedIcon("org.a")->bitmap, *capturer->cachedIcon("org.a")->bitmap);
  EXPECT_EQ(restarted->cachedIcon("org.a")->size, (Size{22, 24}));
}

TEST_F(CapturerTest, KeepsWhatItTookAndSkipsWhatFails) {
  const Pixel red{200, 40, 40, 255};
  desktop.list = Windows{{1, {100, 0, 20, 24}}, {2, {140, 0, 20, 24}}, {3, {180, 0, 20, 24}}};
  desktop.pictures[1] = bitmapOf(2, {clear, red, clear, clear});
  desktop.pictures[3] = bitmapOf(2, {clear, clear});
  capture({item("org.a", 100), item("org.b", 140), item("org.c", 180), item("org.d", 400)});
  EXPECT_EQ(*capturer->cachedIcon("org.a")->bitmap, bitmapOf(1, {red}));
  EXPECT_FALSE(capturer->isMonochromeIcon("org.a"));
  EXPECT_EQ(capturer->cachedIcon("org.b").has_value(), false) << "its capture failed";
  EXPECT_EQ(*capturer->cachedIcon("org.c")->bitmap, desktop.pictures[3]) << "nothing to trim to";
  EXPECT_TRUE(capturer->isMonochromeIcon("org.c"));
  EXPECT_FALSE(capturer->isMonochromeIcon("org.d"));

  // The last captured item of an application wins, in memory and on disk.
  capture({item("org.x", 100), item("org.x", 180)});
  EXPECT_EQ(*capturer->cachedIcon("org.x")->bitmap, desktop.pictures[3]);
  EXPECT_EQ(desktop.files.at("org.x.png"), desktop.pictures[3]);
}

TEST_F(CapturerTest, RefusesRunsItMayNotMake) {
  desktop.list = Windows{{1, {100, 0, 20, 24}}};
  desktop.pictures[1] = bitmapOf(1, {Pixel{0, 0, 0, 255}});
  desktop.allowed = false;
  EXPECT_TRUE(capturer->captureAll({item("org.a", 100)}).isDone());
  desktop.allowed = true;
  EXPECT_TRUE(capturer->captureAll({}).isDone());
  const Task run = capturer->captureAll({item("org.a", 100)});
  EXPECT_TRUE(capturer->captureAll({item("org.b", 100)}).isDone());
  loop.advance(1s);
  EXPECT_TRUE(run.isDone());
  EXPECT_EQ(desktop.captured.size(), 1u);

  desktop.list.reset();  // a failing window list ends the run and frees the way for the next
  capture({item("org.a", 100)});
  desktop.list = Windows{{1, {100, 0, 20, 24}}};
  capture({item("org.b", 100)});
  EXPECT_TRUE(capturer->cachedIcon("org.b").has_value());
}

TEST_F(CapturerTest, FileNamesStayInTheFolder) {
  const std::string longId(300, 'x');
  desktop.list = Windows{{1, {100, 0, 20, 24}}};
  desktop.pictures[1] = bitmapOf(1, {Pixel{0, 0, 0, 255}});
  for (const std::string& id : {std::string("org.a"), std::string("../../evil"), std::string(".."),
                                std::string("a\nb%"), longId}) {
    capture({item(id, 100)});
    EXPECT_TRUE(capturer->cachedIcon(id).has_value());
  }
  std::vector<std::string> names;
  for (const auto& [name, bitmap] : desktop.files) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"..%2F..%2Fevil.png", "...png", "a%0Ab%25.png",
                                             "org.a.png"}));
}

}  // namespace
}  // namespace tarnwick
