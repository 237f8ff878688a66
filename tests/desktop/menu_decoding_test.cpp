#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QStringList>

#include "common/menus/client/chosen_entry.h"
#include "common/menus/client/layout_parser.h"
#include "harness/fake_sni_menu.h"
#include "harness/wire_value.h"

namespace tarnwick::test {
namespace {

using fake::MenuNode;

class MenuDecodingTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { qDBusRegisterMetaType<MenuNode>(); }

  std::optional<MenuEntry> parse(const QVariant& value) {
    const QVariantList wire = passer.pass({value});
    LayoutParser parser(wire.value(0));
    int slices = 1;
    while (!parser.run(QDeadlineTimer(0))) ++slices;
    lastSlices = slices;
    return parser.take();
  }
  std::optional<MenuEntry> parse(const MenuNode& node) { return parse(QVariant::fromValue(node)); }

  static MenuNode entry(int id, const QVariantMap& properties = {}) { return {id, properties, {}}; }

  Wire passer;
  int lastSlices = 0;
};

TEST_F(MenuDecodingTest, WhatIsNoLayoutYieldsNothing) {
  QVariantMap tooMany;
  for (int i = 0; i <= maximumMenuProperties; ++i) tooMany[QString::number(i)] = i;
  const QList<QVariant> cases{7,
                              QStringLiteral("text"),
                              QVariantMap{{"label", "x"}},
                              QVariant::fromValue(QDBusVariant(1)),
                              QStringList{"a"},
                              QVariant::fromValue(entry(0, tooMany))};
  for (const QVariant& value : cases) {
    EXPECT_FALSE(parse(value)) << value.typeName();
  }
}

TEST_F(MenuDecodingTest, PropertiesOfWrongTypesKeepTheirDefaults) {
  struct Case {
    const char* name;
    QVariant value;
    bool (*holds)(const MenuEntry&);
  };
  const QByteArray tooLarge(maximumMenuIconBytes + 1, 'x');
  const std::vector<Case> cases{
      {"label", 7, [](const MenuEntry& e) { return e.label.isEmpty(); }},
      {"label", "_Open a__b & c_", [](const MenuEntry& e) { return e.title() == "Open a_b & c_"; }},
      {"label", QString(5000, 'x'),
       [](const MenuEntry& e) { return e.label.size() == maximumMenuText; }},
      {"label", "two\nlines\tand", [](const MenuEntry& e) { return e.label == "two lines and"; }},
      {"enabled", "no", [](const MenuEntry& e) { return e.enabled; }},
      {"enabled", false, [](const MenuEntry& e) { return !e.enabled; }},
      {"visible", 0, [](const MenuEntry& e) { return e.visible; }},
      {"type", "x-other", [](const MenuEntry& e) { return !e.separator; }},
      {"type", QStringList{"separator"}, [](const MenuEntry& e) { return !e.separator; }},
      {"toggle-state", -7,
       [](const MenuEntry& e) { return e.toggleState == MenuToggleState::indeterminate; }},
      {"toggle-type", "switch", [](const MenuEntry& e) { return e.toggle == MenuToggle::none; }},
      {"icon-data", tooLarge, [](const MenuEntry& e) { return e.iconData.isEmpty(); }},
      {"icon-data", "text", [](const MenuEntry& e) { return e.iconData.isEmpty(); }},
      {"shortcut", QStringList{"Control", "q"},
       [](const MenuEntry& e) { return e.shortcut == "Ctrl+Q"; }},
      {"shortcut", 3, [](const MenuEntry& e) { return e.shortcut.isEmpty(); }},
      {"children-display", "submenu", [](const MenuEntry& e) { return e.submenu; }},
      {"unheard-of", QVariantMap{{"a", 1}}, [](const MenuEntry& e) { return e.label.isEmpty(); }},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(each.name) + " " + each.value.toString().left(40).toStdString());
    MenuNode root = entry(0);
    root.children << entry(1, {{each.name, each.value}});
    const auto layout = parse(root);
    ASSERT_TRUE(layout && layout->children.size() == 1);
    EXPECT_EQ(layout->children[0].id, 1);
    EXPECT_TRUE(each.holds(layout->children[0]));
  }
}

TEST_F(MenuDecodingTest, DepthNumberAndIconsAreLimited) {
  // The bus itself carries no deeper ones.
  MenuNode deep = entry(15);
  for (int id = 14; id >= 0; --id) {
    MenuNode above = entry(id);
    above.children << deep;
    deep = above;
  }
  const auto whole = parse(deep);
  ASSERT_TRUE(whole);
  EXPECT_EQ(menuExtent(*whole).depth, 15);

  MenuNode wide = entry(0);
  for (int id = 1; id <= maximumMenuEntries + 5; ++id) wide.children << entry(id);
  const auto cut = parse(wide);
  ASSERT_TRUE(cut);
  EXPECT_EQ(menuExtent(*cut).entries, maximumMenuEntries);
  EXPECT_GT(lastSlices, 100) << "nothing waits for a long menu";

  MenuNode heavy = entry(0);
  const QByteArray icon(maximumMenuIconBytes, 'x');
  for (int id = 1; id <= 10; ++id) heavy.children << entry(id, {{"icon-data", icon}});
  const auto lighter = parse(heavy);
  ASSERT_TRUE(lighter);
  EXPECT_EQ(lighter->children.size(), 10U);
  EXPECT_EQ(menuExtent(*lighter).iconBytes, maximumMenuIconTotal);
}

TEST_F(MenuDecodingTest, ShowsNoSeparatorsAtTheEndsOrInARow) {
  const QVariantMap separator{{"type", "separator"}};
  const QVariantMap hidden{{"visible", false}};
  MenuNode root = entry(0);
  int id = 0;
  for (const QVariantMap& properties :
       {separator, hidden, {}, separator, hidden, separator, {}, separator, hidden}) {
    root.children << entry(++id, properties);
  }
  const auto layout = parse(root);
  ASSERT_TRUE(layout);
  EXPECT_EQ(shownEntries(layout->children), (std::vector<std::size_t>{2, 5, 6}));
}

// "id title" for each entry; "-" before a title hides it, "!" disables it, and what follows a ">"
// is a submenu's.
MenuEntry menu(const QString& text) {
  MenuEntry root;
  MenuEntry* into = &root;
  for (const QString& part : text.split(", ")) {
    MenuEntry next;
    const QString title = part.section(' ', 1);
    next.id = part.section(' ', 0, 0).toInt();
    next.visible = !title.startsWith('-');
    next.enabled = !title.startsWith('!');
    next.label = title.mid(next.visible && next.enabled ? 0 : 1);
    next.submenu = next.label.endsWith('>');
    into->children.push_back(next);
    if (next.submenu) into = &into->children.back();
  }
  return root;
}

TEST(ChosenEntry, IsFoundAgainByItsIdOrItsTitleAndNoOtherIsPressed) {
  constexpr int none = -1;
  struct Case {
    const char* what;
    const char* shown;
    const char* present;
    std::vector<std::pair<int, int>> ids;  // chosen, to be pressed
  };
  const std::vector<Case> cases{
      {"nothing changed", "1 A, 2 A, 3 B", "1 A, 2 A, 3 B", {{1, 1}, {2, 2}, {3, 3}, {4, none}}},
      {"labels changed", "1 5 s, 2 Pause, 3 Quit", "1 6 s, 2 Resume, 3 Quit", {{1, 1}, {2, 2}}},
      {"all of them", "1 Open, 2 Quit", "1 Oeffnen, 2 Beenden", {{1, 1}, {2, 2}}},
      {"new numbers", "1 A, 2 B, 3 C", "11 A, 12 B, 13 C", {{1, 11}, {3, 13}}},
      {"numbers moved on", "1 A, 2 B, 3 C", "1 New, 2 A, 3 B, 4 C", {{1, 2}, {2, 3}, {3, 4}}},
      {"with equal titles", "1 A, 2 A, 3 B", "1 New, 2 A, 3 A, 4 B", {{1, 2}, {2, 3}, {3, 4}}},
      {"equal titles only", "1 A, 2 A", "1 New, 2 A, 3 A", {{1, 2}, {2, 3}}},
      {"and a label changed",
       "1 A, 2 Pause, 3 B",
       "1 New, 2 A, 3 Resume, 4 B",
       {{1, 2}, {2, none}}},
      {"both at once", "1 A, 2 Pause", "11 A, 12 Resume", {{1, 11}, {2, none}}},
      {"last ones unlike", "1 A, 2 Pause", "1 A, 2 New, 3 Resume", {{1, 1}, {2, none}}},
      {"slots moved on", "1 a, 2 b, 3 c, 9 Q", "1 n, 2 a, 3 b, 9 Q", {{1, 2}, {2, 3}, {3, none}}},
      {"one added", "1 A, 2 Pause, 3 B", "1 A, 2 Resume, 9 New, 3 B", {{2, 2}, {3, 3}}},
      {"equal titles swapped", "1 A, 2 A, 3 B", "2 A, 1 A, 3 B", {{1, 1}, {2, 2}, {3, 3}}},
      {"all labels, one added",
       "1 A5, 2 B5, 3 C5, 9 Quit",
       "1 New, 2 A6, 3 B6, 4 C6, 9 Quit",
       {{1, none}, {2, none}, {3, none}, {9, 9}}},
      {"beside the first", "1 A5, 2 B", "1 A6, 7 New, 2 B", {{1, 1}, {2, 2}}},
      {"before the first", "1 A5, 2 B", "7 New, 1 A6, 2 B", {{1, none}, {2, 2}}},
      {"one of equals gone", "1 A, 2 A, 3 B", "2 A, 3 B", {{1, none}, {2, 2}, {3, 3}}},
      {"which one unknown", "1 A, 2 A, 3 A", "1 A, 2 A", {{1, none}, {2, none}, {3, none}}},
      {"hidden, disabled", "1 A, 2 B, 3 C", "1 -A, 2 !B, 3 C", {{1, none}, {2, none}, {3, 3}}},
      {"one for another", "1 Pause, 2 -Resume, 3 Q", "1 -Pause, 2 Resume, 3 Q", {{1, none}}},
      {"in a submenu", "1 A, 2 B>, 3 C, 4 C", "1 New, 2 A, 3 B>, 4 C, 5 C", {{3, 4}, {4, 5}}},
      {"of a new name", "2 5 kB/s>, 3 C", "2 6 kB/s>, 3 D", {{3, 3}}},
      {"that is none now", "1 A, 2 B>, 3 C", "1 A, 2 B", {{1, 1}, {3, none}}},
      {"moved elsewhere", "1 A, 2 B>, 3 C", "1 A, 3 C, 2 B>, 4 D", {{1, 1}, {3, none}}},
  };
  for (const Case& each : cases) {
    for (const auto& [chosen, pressed] : each.ids) {
      EXPECT_EQ(presentId(menu(each.shown), menu(each.present), chosen).value_or(none), pressed)
          << each.what << ' ' << chosen;
    }
  }
}

// Ids are how entries are pressed: each stands for one entry, and none for the menu itself.
TEST_F(MenuDecodingTest, RepeatedIdsNameTheFirstEntryOnly) {
  const QVariantMap separator{{"type", "separator"}};
  MenuNode below = entry(7, {{"label", "Below"}, {"children-display", "submenu"}});
  below.children << entry(1) << entry(8, {{"label", "Inner"}}) << entry(0);
  MenuNode root = entry(0);
  root.children << entry(1, {{"label", "First"}}) << entry(0, separator) << entry(0) << below
                << entry(0, separator) << entry(7, {{"label", "Again"}});
  for (int i = 0; i < 300; ++i) root.children << entry(0);
  auto layout = parse(root);
  ASSERT_TRUE(layout);
  keepIdsUnique(*layout);
  QHash<int, const MenuEntry*> index;
  indexMenuEntries(*layout, index);
  EXPECT_EQ(menuExtent(*layout).entries, 6);
  EXPECT_EQ(index.size(), 6);
  EXPECT_EQ(index.value(1)->title(), "First");
  EXPECT_EQ(index.value(7)->title(), "Below");
  EXPECT_EQ(index.value(8)->title(), "Inner");
  EXPECT_EQ(shownEntries(layout->children), (std::vector<std::size_t>{0, 1, 2}));
}

}  // namespace
}  // namespace tarnwick::test
