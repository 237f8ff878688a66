#include <QCoreApplication>
#include <QPointF>
#include <QSizeF>
#include <limits>

#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

constexpr auto invalid = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr auto denied = "org.tarnwick.MenuBar1.Error.AccessDenied";
constexpr auto noSuchItem = "org.tarnwick.MenuBar1.Error.NoSuchItem";

// Only the bar, and this process in the parts of several programs.
class BarServiceTest : public StatusDesktopTest {
 protected:
  void SetUp() override {
    StatusDesktopTest::SetUp();
    barProgram = &startBar();
    desktop.grant(QCoreApplication::applicationFilePath(), {"accessibility", "screen-capture"});
    own = bar.addItem("own", 20);
    ASSERT_NE(own, 0U);
  }

  bool adjoin(const char* left, const char* right) {
    return bar.find(left)->frame.right() == bar.find(right)->frame.left();
  }

  void xdotool(const QString& commands) {
    EXPECT_TRUE(desktop.start("xdotool", commands.split(' ')).waitForEnd());
  }

  Program* barProgram = nullptr;
  quint64 own = 0;
};

TEST_F(BarServiceTest, WrongArgumentsAreErrorsAndChangeNothing) {
  const auto other = desktop.connect();
  const quint64 foreign = BarProxy(*other).addItem("foreign", 20);
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const QSizeF size(18, 18);
  const QByteArray four(2 * 2 * 4, '\xff');
  const auto id = [](quint64 number) { return QVariant::fromValue<qulonglong>(number); };
  const QVariant mine = id(own);
  const struct {
    const char* method;
    QVariantList arguments;
    const char* error;
  } cases[] = {
      {"AddItem", {"", 1.0}, invalid},
      {"AddItem", {QString(257, 'x'), 1.0}, invalid},
      {"AddItem", {"x", nan}, invalid},
      {"AddItem", {"x", -1.0}, invalid},
      {"AddItem", {"x", 100001.0}, invalid},
      {"AddItem", {1.0, "x"}, invalid},
      {"SetLength", {mine, infinity}, invalid},
      {"SetLength", {id(foreign), 5.0}, noSuchItem},
      {"SetLength", {id(999), 5.0}, noSuchItem},
      {"PlaceLeftOf", {mine, id(foreign)}, noSuchItem},
      {"PlaceLeftOf", {id(foreign), mine}, noSuchItem},
      {"PlaceLeftOf", {mine, mine}, invalid},
      {"RemoveItem", {id(foreign)}, noSuchItem},
      {"SetImage", {mine, size, 2U, 2U, four.chopped(1), false}, invalid},
      {"SetImage", {mine, size, 1U << 31, 2U, QByteArray(), false}, invalid},
      {"SetImage", {mine, size, 1025U, 1U, QByteArray(4100, 'x'), false}, invalid},
      {"SetImage", {mine, QSizeF(nan, 18), 2U, 2U, four, false}, invalid},
      {"SetImage", {id(foreign), size, 2U, 2U, four, false}, noSuchItem},
      {"Press", {id(999)}, noSuchItem},
      {"PressAt", {id(999), QPointF(1, 2)}, noSuchItem},
      {"PressAt", {mine, QPointF(nan, 2)}, invalid},
      {"Render", {mine, 0U, 10U}, invalid},
      {"Render", {mine, 2049U, 10U}, invalid},
      {"Render", {id(999), 10U, 10U}, noSuchItem},
      {"HasAccess", {"everything"}, invalid},
      {"ShowPane", {"other"}, invalid},
      {"PostPointerEvent", {4U, QPointF(1, 1), 8U}, invalid},
      {"PostPointerEvent", {1U, QPointF(nan, 1), 8U}, invalid},
      {"Nothing", {}, "org.freedesktop.DBus.Error.UnknownMethod"},
  };
  const std::string before = row();
  for (const auto& [method, arguments, error] : cases) {
    bar.call(method, arguments);
    EXPECT_EQ(bar.error(), error) << method << ' ' << arguments.size();
  }
  EXPECT_EQ(row(), before);
  bar.call("SetImage", {mine, size, 2U, 2U, four, false});
  EXPECT_EQ(bar.error(), QString());
  for (int i = 1; i < 64; ++i) EXPECT_NE(bar.addItem(QString::number(i), 1), 0U);
  EXPECT_EQ(bar.addItem("one too many", 1), 0U);
}

TEST_F(BarServiceTest, OwnItemsArePlacedBesideEachOtherAndStayThereOverARestart) {
  bar.addItem("between", 20);
  const quint64 sibling = bar.addItem("sibling", 20);
  ASSERT_FALSE(adjoin("own", "sibling")) << row();
  bar.call("PlaceLeftOf", {QVariant::fromValue(own), QVariant::fromValue(sibling)});
  EXPECT_TRUE(adjoin("own", "sibling")) << row();
  // Soon, and not only when the bar ends.
  const QString file = desktop.folder("state") + "/tarnwick-bar/positions.json";
  const nlohmann::json order{"native:own", "native:sibling", "native:between"};
  ASSERT_TRUE(waitFor([&] { return desktop.readJson(file) == order; }));
  barProgram->kill();
  startBar();
  for (const char* name : {"sibling", "between", "own"}) bar.addItem(name, 20);
  EXPECT_TRUE(adjoin("own", "sibling")) << row();
}

TEST_F(BarServiceTest, TheHandLosesAnItemThatIsPushedOutOfSight) {
  bar.addItem("small", 4);
  bar.addItem("held", 20);
  const auto drag = [&](const QString& end) {
    const QPoint at = bar.find("held")->frame.center().toPoint();
    xdotool(QString("mousemove %1 %2 keydown super mousedown 1 mousemove_relative 13 0%3")
                .arg(at.x())
                .arg(at.y())
                .arg(end));
  };
  drag({});
  ASSERT_TRUE(waitFor([&] { return adjoin("held", "own"); })) << row();
  for (const double length : {16'000.0, 20.0}) {
    bar.call("SetLength", {QVariant::fromValue(own), length});
    xdotool("mousemove_relative 3 0");
  }
  xdotool("mouseup 1 keyup super");
  EXPECT_TRUE(adjoin("held", "small") && adjoin("small", "own")) << row();
  // It can be taken again, which shows that all of the above has arrived.
  drag(" mouseup 1 keyup super");
  EXPECT_TRUE(waitFor([&] { return adjoin("small", "held") && adjoin("held", "own"); })) << row();
}

TEST_F(BarServiceTest, WithoutTheCapabilityNothingOfOthersIsToldOrMoved) {
  const BarItem item = *bar.find("own");
  bar.addItem("left", 20);
  const std::string before = row();
  desktop.grant(QCoreApplication::applicationFilePath(), {});
  for (const auto& [method, arguments] : std::vector<std::pair<const char*, QVariantList>>{
           {"Items", {}},
           {"Press", {QVariant::fromValue<qulonglong>(own)}},
           {"Render", {QVariant::fromValue<qulonglong>(own), 8U, 8U}}}) {
    bar.call(method, arguments);
    EXPECT_EQ(bar.error(), denied) << method;
  }
  bar.drag(item, item.frame.left() - 100);
  EXPECT_FALSE(bar.hasAccess("accessibility"));
  desktop.grant(QCoreApplication::applicationFilePath(), {"accessibility"});
  EXPECT_EQ(row(), before);
}

TEST_F(BarServiceTest, ItemsAndDragsOfALostConnectionGoWithIt) {
  bar.addItem("left", 20);
  const std::string before = row();
  auto other = desktop.connect();
  {
    BarProxy program(*other);
    const BarItem dragged = *program.find("own");
    program.addItem("gone", 30);
    program.postPointer(BarProxy::Pointer::press, dragged.frame.center());
    program.postPointer(BarProxy::Pointer::drag, dragged.frame.center() - QPointF(25, 0));
    const auto held = [&] { return bar.find("own")->centre() < bar.find("left")->centre(); };
    ASSERT_TRUE(waitFor(held)) << row();
    // Another program's drag meanwhile is ignored.
    const std::string during = row();
    bar.drag(*bar.find("left"), 100);
    EXPECT_EQ(row(), during);
  }
  QDBusConnection::disconnectFromBus(other->name());
  other.reset();
  EXPECT_TRUE(waitFor([&] { return row() == before; })) << row();
}

}  // namespace
}  // namespace tarnwick::test
