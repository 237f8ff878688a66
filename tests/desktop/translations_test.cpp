#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"

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

struct Language {
  const char* name;
  const char* wanted;  // by the user, best first
  const char* quit;
  const char* recorder;
  const char* pane;
};

void PrintTo(const Language& language, std::ostream* out) {
  *out << language.name;
}

class TranslationsTest : public StatusDesktopTest, public testing::WithParamInterface<Language> {};

TEST_P(TranslationsTest, BothProgramsSpeakTheUsersLanguage) {
  const Language& language = GetParam();
  desktop.setVariable("LC_ALL", "");
  desktop.setVariable("LANG", "en_US.UTF-8");
  desktop.setVariable("LANGUAGE", language.wanted);
  AccessibleTree tree(desktop);
  desktop.grant("/proc/self/exe", {"accessibility"});
  desktop.start("tarnwick-bar");
  ASSERT_TRUE(waitFor([&] { return bar.running(); }));
  startUtility();
  ASSERT_TRUE(desktop.start("tarnwick").waitForEnd());
  const auto shows = [&](const char* program, const char* name, const char* role) {
    return waitFor([&] { return tree.find(program, name, role).has_value(); });
  };
  EXPECT_TRUE(shows("tarnwick", language.quit, "push button"));
  EXPECT_TRUE(shows("tarnwick", language.recorder, "text"));
  bar.call("ShowPane", {"menu-bar"});
  EXPECT_TRUE(shows("tarnwick-bar", language.pane, "check box"));
}

constexpr Language languages[] = {
    {"German", "de:fr", "Tarnwick beenden", "Panel öffnen", "Datum anzeigen"},
    {"English", "nn:en_GB:de", "Quit Tarnwick", "Open the panel", "Show the date"},
    {"Japanese", "ja_JP:en", "Tarnwick を終了", "パネルを開く", "日付を表示"},
};
INSTANTIATE_TEST_SUITE_P(Languages, TranslationsTest, testing::ValuesIn(languages));

}  // namespace
}  // namespace tarnwick::test
