#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <array>

#include "tests/desktop/harness/accessible_tree.h"
#include "tests/desktop/harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

TEST(Translations, KeepThePlacesOfArguments) {
  static const QRegularExpression place("%[0-9@n]");
  const auto placesIn = [](const QString& text) {
    QStringList places;
    for (auto match = place.globalMatch(text); match.hasNext();) places += match.next().captured();
    places.sort();
    return places;
  };
  const QDir catalogues(TARNWICK_CATALOGUES);
  int messages = 0;
  for (const QString& name : catalogues.entryList({"*.ts"})) {
    QFile file(catalogues.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QString source;
    while (!xml.atEnd()) {
      xml.readNext();
      if (xml.isStartElement() && xml.name() == u"source") source = xml.readElementText();
      if (!xml.isStartElement() || xml.name() != u"translation") continue;
      const QString translation = xml.readElementText();
      EXPECT_EQ(placesIn(source), placesIn(translation)) << qPrintable(name + ": " + translation);
      ++messages;
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(name);
  }
  EXPECT_GT(messages, 4 * 50);
}

class TranslationsTest : public StatusDesktopTest,
                         public testing::WithParamInterface<std::array<const char*, 4>> {};

TEST_P(TranslationsTest, BothProgramsSpeakTheUsersLanguage) {
  const auto& [languages, quit, recorder, pane] = GetParam();
  desktop.setVariable("LC_ALL", "");
  desktop.setVariable("LANG", "en_US.UTF-8");
  desktop.setVariable("LANGUAGE", languages);
  AccessibleTree tree(desktop);
  desktop.grant("/proc/self/exe", {"accessibility"});
  desktop.start("tarnwick-bar");
  ASSERT_TRUE(waitFor([&] { return bar.running(); }));
  startUtility();
  ASSERT_TRUE(desktop.start("tarnwick").waitForEnd());
  EXPECT_TRUE(waitFor([&] { return tree.find("tarnwick", quit, "push button").has_value(); }));
  EXPECT_TRUE(tree.find("tarnwick", recorder, "text"));
  bar.call("ShowPane", {"menu-bar"});
  EXPECT_TRUE(waitFor([&] { return tree.find("tarnwick-bar", pane, "check box").has_value(); }));
}

INSTANTIATE_TEST_SUITE_P(
    Languages, TranslationsTest,
    testing::Values(std::array{"de:fr", "Tarnwick beenden", "Panel öffnen", "Datum anzeigen"},
                    std::array{"nn:en_GB:de", "Quit Tarnwick", "Open the panel", "Show the date"},
                    std::array{"ja_JP:en", "Tarnwick を終了", "パネルを開く", "日付を表示"}));

}  // namespace
}  // namespace tarnwick::test
