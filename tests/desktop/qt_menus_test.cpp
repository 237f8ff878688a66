#include "adapters/qt/qt_menus.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <map>

#include "adapters/qt/qt_main_loop.h"
#include "platform/callback_list.h"
#include "tests/desktop/harness/wait.h"

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

TEST_F(QtMenusTest, DroppedMenuClosesWithoutAWord) {
  { const Registration shown = show(3); }
  letPass(std::chrono::milliseconds(50));
  EXPECT_FALSE(open());
  EXPECT_TRUE(outcomes.empty());
}

TEST_F(QtMenusTest, TypingGoesToTheEntryThatBeginsWithIt) {
  Menu menu;
  for (const char* title : {"Open", "", "Pause", "Play", "&Print", "Off", "Tab\there"}) {
    menu.push_back({title, std::string(title) != "Off", false, {}, element(4)});
  }
  menu[1].separator = true;
  menu[4].submenu = {{"Inner", true, false, {}, element(4)}};
  const Registration shown = menus.popUp(menu, {}, [](const MenuOutcome&) {});
  ASSERT_TRUE(open());
  EXPECT_FALSE(open()->actions().back()->text().contains('\t')) << "no second column";
  const std::vector<std::pair<const char*, int>> cases{{"p", 2}, {"pp", 3}, {"pl", 3}, {"PLAY", 3},
                                                       {"&", 4}, {"o", 0},  {"oo", 0}, {"off", 0}};
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
}

}  // namespace
}  // namespace tarnwick::test
