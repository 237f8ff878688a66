#include "utility/settings/keyed_actions.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>

namespace tarnwick {
namespace {

TEST(KeyedActions, BearTheSignsThatShortcutsAreComparedWith) {
  using M = KeyModifiers;
  const struct {
    const char* sequence;
    const char* key;
    KeyModifiers modifiers;
  } cases[] = {
      {"Ctrl+W", "w", M::control},     {"Ctrl+Shift+Ö", "ö", M::control | M::shift},
      {"Alt+F4", "\uF707", M::option}, {"Meta+Down", "↓", M::command},
      {"Volume Up", "", M::none},
  };
  for (const auto& c : cases) {
    QAction action("&Save && Close…");
    action.setShortcut(QKeySequence(c.sequence));
    const KeyedMenu menu = keyedMenu({&action});
    ASSERT_EQ(menu.size(), 1U);
    EXPECT_EQ(menu[0].title, "Save & Close");
    EXPECT_EQ(menu[0].keyEquivalent, c.key);
    EXPECT_EQ(menu[0].modifierMask, c.modifiers) << c.key;
  }
}

TEST(KeyedActions, AreThereOnceForEachShortcutAndWithTheirMenus) {
  QMenu menu("File");
  menu.addAction("Open")->setShortcuts({{"Ctrl+K, O"}, {"Ctrl+O"}, {"F3"}});
  const KeyedMenu all = keyedMenu({menu.menuAction()});
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].title, "File");
  ASSERT_EQ(all[0].submenu.size(), 2U);
  EXPECT_EQ(all[0].submenu[0].keyEquivalent, "o");
  EXPECT_EQ(all[0].submenu[1].keyEquivalent, "\uF706");
}

}  // namespace
}  // namespace tarnwick
