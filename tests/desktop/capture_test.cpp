#include <QFile>
#include <QFileInfo>
#include <QImage>

#include "core/capture/bitmap_analysis.h"
#include "harness/status_desktop_test.h"
#include "utility/pictures/png_files.h"

namespace tarnwick::test {
namespace {

class CaptureTest : public StatusDesktopTest {
 protected:
  QString fileOf(const Client& client) const {
    return desktop.folder("data") + "/Tarnwick/iconcache-2x/" + client.bundleId + ".png";
  }
  QImage pictureOf(const Client& client) const { return QImage(fileOf(client)); }

  // Drawn alone: no pixel of the bar's ground comes with it.
  static bool hasTransparentGround(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (qAlpha(picture.pixel(x, y)) == 0) return true;
      }
    }
    return false;
  }
};

TEST_F(CaptureTest, HiddenApplicationsPicturesAreTakenOnTheWayOut) {
  const std::vector<Client> clients{copyq, diodon, parcellite, volumeicon};
  grantUtility();
  startBar();
  startClients(clients);
  startUtility();
  for (const Client& client : clients) {
    ASSERT_TRUE(hide(client));
    ASSERT_TRUE(waitFor([&] { return collapsed() && hidden(client); })) << row();
    const QImage picture = pictureOf(client);
    const QRectF frame = bar.itemsOf(client.bundleId).front().frame;
    EXPECT_GT(picture.width(), 20) << client.program << ": two pixels for each point";
    EXPECT_LE(picture.width(), 2 * frame.width()) << client.program;
    EXPECT_LE(picture.height(), 2 * frame.height()) << client.program;
    EXPECT_TRUE(hasTransparentGround(picture)) << client.program;
    const auto bitmap = PngFiles(QFileInfo(fileOf(client)).path().toStdString())
                            .read(QFileInfo(fileOf(client)).fileName().toStdString());
    ASSERT_TRUE(bitmap.has_value());
    EXPECT_EQ(isMonochrome(*bitmap), client.bundleId == volumeicon.bundleId) << client.program;
  }
}

TEST_F(CaptureTest, MissingPictureIsTakenInAShortReveal) {
  grantUtility();
  startBar();
  startClients({copyq, parcellite, gxkb});
  desktop.writeDefaults({{"hiddenBundleIds", {copyq.bundleId, parcellite.bundleId}},
                         {"panelIconStyle", "statusIcon"}});
  Program& before = startUtility();
  const auto settled = [&] { return collapsed() && hidden(copyq) && hidden(parcellite); };
  ASSERT_TRUE(waitFor(settled)) << row();
  const QImage old = pictureOf(parcellite);
  ASSERT_FALSE(old.isNull());

  // Forgotten by the file and by the memory of the process.
  ASSERT_TRUE(before.terminate());
  ASSERT_TRUE(QFile::remove(fileOf(parcellite)));
  ASSERT_TRUE(waitFor([&] { return shown(parcellite); })) << row();
  startUtility();
  ASSERT_TRUE(waitFor(settled)) << row();
  EXPECT_FALSE(QFile::exists(fileOf(parcellite)));

  ASSERT_TRUE(desktop.activateAction("toggle-panel"));
  EXPECT_TRUE(waitFor([&] { return boundaryLength() == 2 && shown(parcellite); })) << row();
  EXPECT_TRUE(waitFor([&] { return settled() && QFile::exists(fileOf(parcellite)); })) << row();
  EXPECT_EQ(pictureOf(parcellite).size(), old.size());
}

TEST_F(CaptureTest, IconThatItsOwnerHasNotGivenYetIsWaitedForAWhile) {
  startBar();
  const auto icon = [&](const char* file, QRgb colour) {
    const QString path = desktop.folder("data") + file;
    QImage square(18, 18, QImage::Format_ARGB32);
    square.fill(colour);
    EXPECT_TRUE(square.save(path));
    return path;
  };
  const QString red18 = icon("/red.png", 0xffcc2222);
  const QStringList sni{"fake_sni_client", "--icon-size=0"};
  const QStringList transparentSni = sni + QStringList{"--icon-name", icon("/clear.png", 0)};
  const QStringList xembed{"fake_xembed_client", "--colour=0"};
  const QByteArray red = "\xcc\x22\x22\xff";
  const QByteArray opaque = "\xff";
  const struct {
    QStringList client;  // program, arguments
    QString gives;       // what makes it give an icon; empty: it never does
    QByteArray shows;
  } cases[] = {{xembed, "colour ffcc2222", red},
               {sni, "icon-name " + red18, red},
               {transparentSni, "icon-name " + red18, red},
               {transparentSni, {}, opaque},
               {xembed, {}, opaque},
               {sni, {}, opaque}};
  for (const auto& [command, gives, shows] : cases) {
    SCOPED_TRACE((command.join(' ') + ' ' + gives).toStdString());
    Program& client = desktop.start(command[0], command.mid(1));
    const QString hint = command[0] == sni[0] ? "fake-sni" : "FakeXembed";
    ASSERT_TRUE(waitFor([&] { return bar.find(hint).has_value(); })) << row();
    const auto [id, cell] = std::pair(bar.find(hint)->id, bar.find(hint)->frame.toRect());
    const QImage drawn = desktop.screenshot().copy(cell.adjusted(1, 1, -1, -2));
    QImage ground = drawn;
    ground.fill(drawn.pixelColor(0, 0));
    EXPECT_TRUE(drawn == ground) << "nothing that would give way to the icon at once";
    bar.render(id, 26, 24);
    EXPECT_EQ(bar.error(), "org.tarnwick.MenuBar1.Error.NoPicture");
    if (!gives.isEmpty()) client.write(gives.toUtf8());
    EXPECT_TRUE(waitFor([&] { return bar.render(id, 26, 24).rgba.contains(shows); }));
    client.kill();
    EXPECT_TRUE(waitFor([&] { return !bar.find(hint); })) << row();
  }
}

}  // namespace
}  // namespace tarnwick::test
