#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QStringList>

#include "dbusmenu/layout_parser.h"
#include "tests/desktop/fake_sni_menu.h"
#include "tests/desktop/harness/wire_value.h"

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
