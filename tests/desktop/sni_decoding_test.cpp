#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <limits>

#include "bar/sni/pixmap_choice.h"
#include "bar/sni/sni_properties.h"
#include "harness/fake_sni_options.h"
#include "harness/wire_value.h"

namespace tarnwick::bar {
namespace {

class SniDecodingTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    qDBusRegisterMetaType<fake::Pixmap>();
    qDBusRegisterMetaType<QList<fake::Pixmap>>();
    qDBusRegisterMetaType<fake::ToolTip>();
  }
  SniProperties decode(const QVariantMap& values) {
    QVariantMap received;
    const QVariantList passed = wire.pass({values});
    if (!passed.isEmpty()) passed[0].value<QDBusArgument>() >> received;
    return decodeSniProperties(received);
  }

  test::Wire wire;
};

TEST_F(SniDecodingTest, EachPropertyIsReadByItself) {
  const auto path = [](const char* text) { return QVariant::fromValue(QDBusObjectPath(text)); };
  const auto pixmaps = [](int count, qsizetype bytes) {
    return QVariant::fromValue(QList<fake::Pixmap>(count, {2, 2, QByteArray(bytes, 'x')}));
  };
  struct Case {
    const char* name;
    QVariant value;
    bool (*holds)(const SniProperties&);
  };
  const std::vector<Case> cases{
      {"Id", 7, [](const SniProperties& p) { return p.id.isEmpty(); }},
      {"Title", "two\n lines", [](const SniProperties& p) { return p.title == "two lines"; }},
      {"Title", QString(1 << 20, 'x'),
       [](const SniProperties& p) { return p.title.size() == 1000; }},
      {"Status", "foo", [](const SniProperties& p) { return p.status == SniStatus::active; }},
      {"Status", true, [](const SniProperties& p) { return p.status == SniStatus::active; }},
      {"Status", "Passive", [](const SniProperties& p) { return p.status == SniStatus::passive; }},
      {"Menu", path("/menu"), [](const SniProperties& p) { return p.menuPath == "/menu"; }},
      {"Menu", "/menu", [](const SniProperties& p) { return p.menuPath == "/menu"; }},
      {"Menu", "no path", [](const SniProperties& p) { return p.menuPath.isEmpty(); }},
      {"Menu", path("/NO_DBUSMENU"), [](const SniProperties& p) { return p.menuPath.isEmpty(); }},
      {"Menu", path("/"), [](const SniProperties& p) { return p.menuPath.isEmpty(); }},
      {"ItemIsMenu", "true", [](const SniProperties& p) { return !p.itemIsMenu; }},
      {"ItemIsMenu", false, [](const SniProperties& p) { return p.itemIsMenu == false; }},
      {"IconName", QByteArray("x"), [](const SniProperties& p) { return p.icon.name.isEmpty(); }},
      {"IconPixmap", QStringList{"x"}, [](const SniProperties& p) { return p.icon.isEmpty(); }},
      {"IconPixmap", pixmaps(100, 16),
       [](const SniProperties& p) { return p.icon.pixmaps.size() == 32; }},
      {"IconPixmap", pixmaps(20, 1 << 20),
       [](const SniProperties& p) { return p.icon.pixmaps.size() == 16; }},
      {"ToolTip", "<b>plain</b> &amp; &#x41; <unclosed",
       [](const SniProperties& p) { return p.toolTipText == "plain & A <unclosed"; }},
      {"ToolTip", QVariant::fromValue(fake::ToolTip{"a<br/>b", "&bogus; &#xd800;"}),
       [](const SniProperties& p) {
         return p.toolTipTitle == "a\nb" && p.toolTipText == "&bogus; &#xd800;";
       }},
      {"ToolTip", 3.5, [](const SniProperties& p) { return p.toolTipText.isEmpty(); }},
      {"XAyatanaLabel", 1, [](const SniProperties& p) { return p.label.isEmpty() && p.ayatana; }},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(each.name) + " " + each.value.toString().left(40).toStdString());
    EXPECT_TRUE(each.holds(decode({{each.name, each.value}})));
  }
  const SniProperties nothing = decode({});
  EXPECT_TRUE(nothing.icon.isEmpty() && nothing.menuPath.isEmpty() && !nothing.ayatana);
}

}  // namespace
}  // namespace tarnwick::bar
