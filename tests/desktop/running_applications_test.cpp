#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>
#include <nlohmann/json.hpp>
#include <set>

#include "common/look/application_icon.h"
#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"

namespace tarnwick::test {
namespace {

class RunningApplicationsTest : public StatusDesktopTest {
 protected:
  void install(const QString& id, const QByteArray& keys) {
    const QString folder = desktop.folder("data") + "/applications";
    QDir().mkpath(folder);
    QFile file(folder + "/" + id + ".desktop");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\n" + keys + "\n");
  }

  void openPanel() {
    ASSERT_TRUE(desktop.activateAction("toggle-panel"));
    ASSERT_TRUE(waitFor([&] { return !desktop.windowFrame("Hidden apps").isEmpty(); }));
  }
  void closePanel() {
    ASSERT_TRUE(desktop.activateAction("toggle-panel"));
    ASSERT_TRUE(waitFor([&] { return desktop.windowFrame("Hidden apps").isEmpty(); }));
  }

  // Whether the panel has an entry of that name and something is drawn in it, or nothing.
  bool lists(const QString& name, bool picture) {
    const auto entry = tree.find("tarnwick", name, "push button");
    if (!entry) return false;
    const QImage cell = desktop.screenshot().copy(tree.frameOf(*entry));
    std::set<QRgb> colours;
    for (int y = 0; y < cell.height(); ++y) {
      for (int x = 0; x < cell.width(); ++x) colours.insert(cell.pixel(x, y));
    }
    return (colours.size() > 1) == picture;
  }

  AccessibleTree tree{desktop};
};

TEST_F(RunningApplicationsTest, AreToldWithoutPermissionAndWithoutAnItem) {
  startBar();
  startClients({copyq, parcellite});
  Program& windowed = desktop.start("fake_xembed_client", {"--window"});
  const Client window{"", "fake_xembed_client"};
  const Client onBus{"fake_portal", "org.freedesktop.portal.Desktop"};
  install(onBus.bundleId, "Name=By its bus name\nExec=something-else");
  desktop.start(onBus.program, {"2"});
  ASSERT_TRUE(waitFor([&] { return desktop.ownerOf(onBus.bundleId) != 0; }));
  hideInDefaults({copyq, parcellite, window, onBus, gxkb, {"", "not-running"}});
  startUtility();
  openPanel();
  for (const auto& [name, picture] : {std::pair("CopyQ", true),
                                      {"Parcellite", true},
                                      {"fake_xembed_client", true},
                                      {"By its bus name", true},
                                      {"gxkb", false},
                                      {"not-running", false}}) {
    EXPECT_TRUE(waitFor([&] { return lists(name, picture); })) << name;
  }
  closePanel();

  // What comes after the first look: an application, a desktop file, a window.
  startClients({gxkb});
  install("of-window", "Name=By its window\nExec=something-else\nStartupWMClass=FakeXembed");
  windowed.write("show");
  ASSERT_TRUE(waitFor([&] { return !desktop.windowFrame("fake-xembed").isEmpty(); }));
  openPanel();
  EXPECT_TRUE(waitFor([&] { return lists("By its window", true); }));
  EXPECT_FALSE(tree.find("tarnwick", "gxkb", "push button")) << "it has a name now";
  closePanel();
  install("later", "Name=Later\nExec=fake_xembed_client");
  desktop.writeDefaults({{"hiddenBundleIds", {"later"}}});
  openPanel();
  EXPECT_TRUE(waitFor([&] { return lists("Later", true); }));
}

// A theme of a test's own in this process.
class ApplicationIconTest : public testing::Test {
 protected:
  ApplicationIconTest() : paths_(QIcon::themeSearchPaths()), name_(QIcon::themeName()) {
    QDir(root_.path()).mkpath("t/16x16/apps");
    QFile index(root_.filePath("t/index.theme"));
    if (index.open(QIODevice::WriteOnly)) {
      index.write("[Icon Theme]\nName=t\nDirectories=16x16/apps\n[16x16/apps]\nSize=16\n");
    }
  }
  ~ApplicationIconTest() override {
    QIcon::setThemeSearchPaths(paths_);
    QIcon::setThemeName(name_);
  }

  void add(const QString& name, QSize size, Qt::GlobalColor colour) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(root_.filePath("t/16x16/apps/" + name + ".png")));
  }

  // The one colour that the picture is filled with; invalid when there are several.
  static QColor filledWith(const QStringList& names) {
    const QPixmap pixmap = applicationPixmap(applicationIcon(names), 18, 2);
    EXPECT_EQ(pixmap.size(), QSize(36, 36));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2);
    const QImage image = pixmap.toImage();
    for (int i = 0; i < 36 * 36; ++i) {
      if (image.pixel(i % 36, i / 36) != image.pixel(0, 0)) return {};
    }
    return image.pixelColor(0, 0);
  }

  QTemporaryDir root_;
  const QStringList paths_;
  const QString name_;
};

TEST_F(ApplicationIconTest, IsFoundByEveryNameAndFillsItsSquare) {
  add("small", {16, 16}, Qt::red);
  add("wide", {16, 8}, Qt::green);
  QIcon::setThemeSearchPaths({root_.path()});
  QIcon::setThemeName("t");
  EXPECT_FALSE(filledWith({"unknown"}).isValid()) << "a neutral picture";
  add("application-x-executable", {16, 16}, Qt::blue);
  QIcon::setThemeSearchPaths({root_.path()});  // read anew
  const std::pair<QStringList, QColor> cases[] = {
      {{"small"}, Qt::red},           {{"wide"}, Qt::green},    {{"", "no", "small"}, Qt::red},
      {{"/gone/Small.png"}, Qt::red}, {{"small.svg"}, Qt::red}, {{"small-symbolic"}, Qt::red},
      {{"unknown"}, Qt::blue},        {{}, Qt::blue},
  };
  for (const auto& [names, colour] : cases) {
    EXPECT_EQ(filledWith(names), colour) << names.join(' ');
  }
}

}  // namespace
}  // namespace tarnwick::test
