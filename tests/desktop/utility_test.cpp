#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

#include "tests/desktop/harness/desktop_test.h"
#include "tests/desktop/harness/scripted_bar.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

// The utility and a bar that the test plays.
class UtilityTest : public DesktopTest {
 protected:
  // Two items of one process; its application is named after the program.
  void SetUp() override {
    DesktopTest::SetUp();
    scripted = std::make_unique<ScriptedBar>(desktop.connect());
    const auto pid = static_cast<qint32>(desktop.start("sleep", {"600"}).pid());
    for (quint64 i = 0; i < 2; ++i) {
      BarItem item;
      item.id = 100 + i;
      item.pid = pid;
      item.kind = "sni";
      item.hint = QStringLiteral("item-%1").arg(i);
      item.frame = {900.0 + 30 * static_cast<double>(i), 0, 24, 24};
      item.busName = ":1.0";
      item.objectPath = "/StatusNotifierItem";
      scripted->foreign.push_back(item);
    }
    desktop.writeDefaults({{"hiddenBundleIds", {"sleep"}}});
  }

  bool called(const QString& method) const {
    return std::find(scripted->calls.begin(), scripted->calls.end(), method) !=
           scripted->calls.end();
  }
  const std::vector<double>& boundaryLengths() const {
    static const std::vector<double> none;
    const auto* boundary = scripted->native("tarnwick.boundary");
    return boundary != nullptr ? boundary->lengths : none;
  }
  // The boundary was made short for a pass and is long again.
  bool passEnded() const {
    const auto& lengths = boundaryLengths();
    const auto expanded = std::find(lengths.begin() + (lengths.empty() ? 0 : 1), lengths.end(), 2);
    return expanded != lengths.end() && lengths.back() == 16000;
  }

  std::unique_ptr<ScriptedBar> scripted;
};

TEST_F(UtilityTest, StubbornItemsCostAsManyDragsAsThereAreHiddenItems) {
  desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return scripted->drags() > 0 && passEnded(); }));
  letPass(500ms);
  EXPECT_EQ(scripted->drags(), 2);
  ASSERT_EQ(scripted->events.size(), 16U);
  // Every drag: from the first item's centre to 12 points left of the boundary, Super alone held.
  const double boundary = 800 - 24 - 2;
  for (std::size_t i = 0; i < scripted->events.size(); ++i) {
    const auto& event = scripted->events[i];
    const auto step = static_cast<double>(std::min<std::size_t>(i % 8, 6));
    EXPECT_EQ(event.kind, i % 8 == 0 ? 1U : i % 8 == 7 ? 3U : 2U);
    EXPECT_NEAR(event.at.x(), 912 + (boundary - 12 - 912) * step / 6, 0.001);
    EXPECT_EQ(event.at.y(), 12);
    EXPECT_EQ(event.modifiers, BarProxy::superModifier);
  }
}

TEST_F(UtilityTest, WithoutAccessNothingIsDoneAndNothingIsAsked) {
  scripted->granted.clear();
  desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return !boundaryLengths().empty(); }));
  scripted->announceApplication(scripted->foreign[0].pid);
  letPass(4s);  // longer than any of the delays before a pass
  EXPECT_FALSE(called("RequestAccess"));
  EXPECT_FALSE(called("Items"));
  EXPECT_TRUE(scripted->events.empty());
  // Long from the start, as something is to be hidden, and left so.
  EXPECT_EQ(boundaryLengths().back(), 16000);
  EXPECT_EQ(std::count(boundaryLengths().begin() + 1, boundaryLengths().end(), 2), 0);
}

// Opening the panel takes missing pictures where that is allowed, and else leaves the bar alone.
TEST_F(UtilityTest, WithoutScreenCaptureThePanelMovesAndAsksNothing) {
  scripted->foreign[0].frame.moveLeft(-5000);
  scripted->foreign[1].frame.moveLeft(-5030);
  desktop.writeDefaults({{"hiddenBundleIds", {"sleep"}}, {"panelIconStyle", "statusIcon"}});
  desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return called("Items"); }));
  const auto shown = boundaryLengths().size();
  ASSERT_TRUE(desktop.activateAction("toggle-panel"));
  letPass(1s);
  EXPECT_FALSE(called("RequestAccess"));
  EXPECT_FALSE(called("Render"));
  EXPECT_EQ(boundaryLengths().size(), shown);
}

TEST_F(UtilityTest, BarThatGivesNoPicturesIsAskedForOneInAPass) {
  scripted->granted.insert("screen-capture");
  scripted->unanswered = {"Render"};
  desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return scripted->drags() > 0 && passEnded(); }));
  EXPECT_EQ(std::count(scripted->calls.begin(), scripted->calls.end(), "Render"), 1);
}

TEST_F(UtilityTest, ItemThatVanishesDuringItsDragEndsNothing) {
  scripted->onPointerEvent = [&](const ScriptedBar::PointerEvent& event) {
    if (event.kind == 2) {
      scripted->foreign.clear();
    }
  };
  Program& utility = desktop.start("tarnwick");
  ASSERT_TRUE(waitFor([&] { return scripted->drags() > 0 && passEnded(); }));
  EXPECT_EQ(scripted->drags(), 1);
  EXPECT_TRUE(utility.running());
}

}  // namespace
}  // namespace tarnwick::test
