#include "utility/menus/qt_menus.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <map>

#include "common/base/callback_list.h"
#include "harness/wait.h"
#include "utility/loop/qt_main_loop.h"
#include "utility/panel/panel_content.h"

namespace tarnwick::test {
namespace {

struct Presses : EventMonitors {
  Registration addGlobalPressMonitor(std::function<void()> callback) override {
    return listeners.add(std::move(callback));
  }
  CallbackList listeners;
};

class QtMenusTest : public testing::Test {
 protected:
  // Shows a menu with one entry, which stands for an entry of this item.
  Registration show(std::uint64_t item) {
    return menus.popUp({{"Entry", true, false, {}, element(item)}}, {10, 20},
                       [this, item](const MenuOutcome& outcome) {
                         EXPECT_FALSE(outcomes.contains(item)) << "told once";
                         outcomes[item] = outcome;
                       });
  }
  static AXElement element(std::uint64_t item) { return {AXElement::Kind::menuEntry, 1, item, 7}; }
  static QMenu* open() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
  bool told(std::uint64_t item) {
    return waitFor([&] { return outcomes.contains(item); });
  }

  QtMainLoop loop;
  Presses presses;
  std::map<std::uint64_t, CallbackList> gone;
  QtMenus menus{loop, presses, [this](const AXElement& entry, std::function<void()> callback) {
                  return gone[entry.item].add(std::move(callback));
                }};
  std::map<std::uint64_t, MenuOutcome> outcomes;
};

TEST_F(QtMenusTest, TellsWhatBecameOfTheMenu) {
  struct Case {
    const char* what;
    std::function<void()> happens;
    bool itemChosen;
    bool hasElement;
  };
  const std::vector<Case> cases{
      {"chosen", [] { open()->actions().front()->trigger(), open()->close(); }, true, true},
      {"closed", [] { open()->close(); }, false, false},
      {"pressed elsewhere", [this] { presses.listeners.notify(); }, false, false},
      {"gone", [this] { gone[5].notify(); }, true, false},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    outcomes.clear();
    const Registration shown = show(5);
    ASSERT_TRUE(open());
    each.happens();
    EXPECT_TRUE(outcomes.empty()) << "in a later turn";
    ASSERT_TRUE(told(5));
    EXPECT_EQ(outcomes[5].itemChosen, each.itemChosen);
    EXPECT_EQ(outcomes[5].representedObject.has_value(), each.hasElement);
    EXPECT_FALSE(open());
  }
}

TEST_F(QtMenusTest, NextMenuTakesTheOldOnesPlace) {
  const Registration first = show(1);
  const Registration second = show(2);
  ASSERT_TRUE(told(1));
  EXPECT_TRUE(outcomes[1].itemChosen && !outcomes[1].representedObject) << "nothing to cancel";
  ASSERT_TRUE(open());
  open()->close();
  EXPECT_TRUE(told(2));
}

void sendMouse(QWidget& to, QEvent::Type type, QPointF at, Qt::MouseButton button,
               Qt::MouseButtons held) {
  QMouseEvent event(type, at, to.mapToGlobal(at), button, held, Qt::NoModifier);
  QApplication::sendEvent(&to, &event);
}

// P, D and R: press, second press of a double click and release of the left button, p and r of the
// right one; 1 and 2: the pointer goes about on the first or second entry with the left one down.
TEST_F(QtMenusTest, OnlyAPressThatCameToTheMenuChooses) {
  const std::map<char, QEvent::Type> types{
      {'p', QEvent::MouseButtonPress},    {'r', QEvent::MouseButtonRelease},
      {'d', QEvent::MouseButtonDblClick}, {'1', QEvent::MouseMove},
      {'2', QEvent::MouseMove},
  };
  const std::vector<std::pair<QString, std::uint64_t>> cases{
      {"R", 0},  {"1R", 0},    {"12R", 0}, {"r", 0},    {"DR", 0},    {"RDR", 0}, {"PR", 1},
      {"pr", 1}, {"1R1PR", 1}, {"1pR", 0}, {"1pRr", 1}, {"RDRPR", 1}, {"P12R", 2}};
  for (const auto& [moves, expected] : cases) {
    SCOPED_TRACE(moves.toStdString());
    outcomes.clear();
    const Registration shown =
        menus.popUp({{"One", true, false, {}, element(1)}, {"Two", true, false, {}, element(2)}},
                    {}, [&](const MenuOutcome& outcome) { outcomes[0] = outcome; });
    ASSERT_TRUE(open());
    QMenu& menu = *open();
    int entry = 0;
    for (const QChar move : moves) {
      const auto button = move.isUpper() || move.isDigit() ? Qt::LeftButton : Qt::RightButton;
      const auto type = types.at(move.toLower().toLatin1());
      if (move.isDigit()) entry = move.digitValue() - 1;
      const QPoint at = menu.actionGeometry(menu.actions()[entry]).center();
      for (int i = 0; i < (move.isDigit() ? 12 : 1); ++i) {
        sendMouse(menu, type, at + QPoint(i % 2, 0), move.isDigit() ? Qt::NoButton : button,
                  type == QEvent::MouseButtonRelease ? Qt::NoButton : button);
      }
    }
    EXPECT_EQ(open() == nullptr, expected != 0);
    if (expected == 0) continue;
    ASSERT_TRUE(told(0));
    EXPECT_EQ(outcomes[0].representedObject, element(expected));
  }
}

TEST(PanelCell, TellsWhichButtonPressedItAndWhere) {
  PanelCell cell({"org.a", "A", {}}, false, nullptr);
  cell.setGeometry(100, 50, 34, 30);
  std::vector<std::pair<bool, double>> told;
  QObject::connect(&cell, &PanelCell::tapped,
                   [&](bool right, double centre) { told.emplace_back(right, centre); });
  for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    const auto before = told.size();
    sendMouse(cell, QEvent::MouseButtonPress, {3, 3}, button, button);
    EXPECT_EQ(told.size(), before + (button <= Qt::RightButton ? 1 : 0)) << "at once";
    sendMouse(cell, QEvent::MouseButtonRelease, {3, 3}, button, Qt::NoButton);
  }
  EXPECT_EQ(told, (decltype(told){{false, 117.0}, {true, 117.0}}));
}

TEST_F(QtMenusTest, DroppedMenuClosesWithoutAWord) {
  { const Registration shown = show(3); }
  letPass(std::chrono::milliseconds(50));
  EXPECT_FALSE(open());
  EXPECT_TRUE(outcomes.empty());
}

TEST_F(QtMenusTest, TypingGoesToTheEntryThatBeginsWithIt) {
  Menu menu;
  const std::string wide = "Wide <b>" + std::string(400, 'm') + " title";
  const std::string wider = "Wide <b>" + std::string(400, 'm') + "x title";
  for (const std::string& title : std::vector<std::string>{"Open", "", "Pause", "Play", "&Print",
                                                           "Off", wide, wider, "Tab\there"}) {
    menu.push_back({title, title != "Off", false, {}, element(4)});
  }
  menu[1].separator = true;
  menu[4].submenu = {{"Inner", true, false, {}, element(4)}};
  const Registration shown = menus.popUp(menu, {}, [](const MenuOutcome&) {});
  ASSERT_TRUE(open());
  EXPECT_FALSE(open()->actions().back()->text().contains('\t')) << "no second column";
  const std::vector<std::pair<const char*, int>> cases{{"p", 2},    {"pp", 3},  {"pl", 3},
                                                       {"PLAY", 3}, {"&", 4},   {"o", 0},
                                                       {"oo", 0},   {"off", 0}, {wider.c_str(), 7}};
  for (const auto& [typed, index] : cases) {
    SCOPED_TRACE(typed);
    QMenu* const shownMenu = open();
    shownMenu->setActiveAction(nullptr);
    QKeyEvent control(QEvent::KeyPress, Qt::Key_Control, Qt::ControlModifier);
    QApplication::sendEvent(shownMenu, &control);  // a word begins anew
    for (const char* letter = typed; *letter != '\0'; ++letter) {
      QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(*letter)));
      QApplication::sendEvent(shownMenu, &key);
    }
    EXPECT_EQ(shownMenu->actions().indexOf(shownMenu->activeAction()), index);
    EXPECT_EQ(open(), shownMenu) << "no submenu has opened";
  }
  for (const int index : {0, 6}) {
    const QPoint at = open()->actionGeometry(open()->actions()[index]).center();
    QHelpEvent help(QEvent::ToolTip, at, open()->mapToGlobal(at));
    QApplication::sendEvent(open(), &help);
    EXPECT_EQ(QToolTip::text().contains("Wide &lt;b&gt;"), index == 6) << "what is cut has a tip";
  }
}

}  // namespace
}  // namespace tarnwick::test
