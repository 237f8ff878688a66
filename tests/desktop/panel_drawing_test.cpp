#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QScrollBar>
#include <QTemporaryDir>

#include "adapters/qt/form_controls.h"
#include "adapters/qt/panel_content.h"
#include "adapters/qt/qt_panel_window.h"
#include "look/tool_tip.h"

namespace tarnwick {
namespace {

const std::string longTitle(200, 'M');

Picture pictureOf(QColor color, int width, int height) {
  auto bitmap = std::make_shared<Bitmap>(Bitmap{width, height, {}});
  for (int i = 0; i < width * height; ++i) {
    for (const int channel : {color.red(), color.green(), color.blue(), 255}) {
      bitmap->rgba.push_back(static_cast<std::uint8_t>(channel));
    }
  }
  return {bitmap, {static_cast<double>(width), static_cast<double>(height)}};
}

class PanelDrawingTest : public testing::Test {
 protected:
  void show(const PanelView& view, double width = 0) {
    window->setRootView(view);
    Size size = window->fittingSize();
    if (width > 0) size.width = width;
    window->setContentSize(size);
    window->orderFrontRegardless();
    for (QWidget* const top : QApplication::topLevelWidgets()) {
      if (top->isVisible()) widget = top;
    }
    QApplication::processEvents();
  }
  QImage drawn(int scale) {
    QImage image(widget->size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    widget->render(&image);
    return image;
  }
  // What has that colour, in points.
  static QRectF placeOf(const QImage& image, QColor color) {
    QRect place;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) == color) place |= QRect(x, y, 1, 1);
      }
    }
    const double scale = image.devicePixelRatio();
    return {place.x() / scale, place.y() / scale, place.width() / scale, place.height() / scale};
  }
  QLabel* title(std::size_t index = 0) {
    return widget->findChildren<QLabel*>().value(static_cast<qsizetype>(index));
  }

  std::unique_ptr<PanelWindow> window =
      QtPanelWindows({[] { return true; }, [](WId, const std::optional<QRect>&, int) {}})
          .makePanelWindow();
  QWidget* widget = nullptr;
};

TEST_F(PanelDrawingTest, EverythingLiesWhereItsMeasuresSayAtEveryScale) {
  const QTemporaryDir folder;
  const std::string icon = folder.filePath("icon.png").toStdString();
  QImage plain(52, 52, QImage::Format_RGB32);
  plain.fill(Qt::magenta);
  ASSERT_TRUE(plain.save(QString::fromStdString(icon)));
  PanelView view;
  view.columns = 2;
  view.sections = {{{},
                    {{"a", "A", pictureOf(Qt::red, 34, 28), true, false},
                     {"b", "B", pictureOf(Qt::green, 68, 32), true, false},
                     {"c", "C", pictureOf(Qt::blue, 20, 14), true, false}}},
                   {"Group",
                    {{"d", "D", ThemeIcon{icon}, false, false},
                     {"e", "E", pictureOf(Qt::cyan, 28, 56), true, false}}}};
  for (const bool statusStyle : {false, true}) {
    view.statusStyle = statusStyle;
    show(view);
    // Margin 6, padding 12; two rows of 30 with 8 between, then 10; the title, then 6.
    const int titleHeight = title()->height();
    EXPECT_EQ(title()->pos(), QPoint(18, 96));
    const double below = 96 + titleHeight + 6;
    EXPECT_EQ(widget->size(), QSize(18 + 34 + 8 + 34 + 18, static_cast<int>(below) + 30 + 18));
    for (const int scale : {1, 2}) {
      SCOPED_TRACE(testing::Message() << statusStyle << " at " << scale);
      const QImage image = drawn(scale);
      EXPECT_EQ(placeOf(image, Qt::red), QRectF(18, 19, 34, 28));
      EXPECT_EQ(placeOf(image, Qt::green), QRectF(60, 25, 34, 16));
      EXPECT_EQ(placeOf(image, Qt::blue), QRectF(25, 64, 20, 14));
      EXPECT_EQ(placeOf(image, Qt::magenta),
                statusStyle ? QRectF(25, below + 5, 20, 20) : QRectF(22, below + 2, 26, 26));
      EXPECT_EQ(placeOf(image, Qt::cyan), QRectF(70, below + 1, 14, 28));
      // The ground, with corners of radius 12 and nothing but a shadow around it.
      const auto isGround = [&](double x, double y) {
        return image.pixelColor((QPointF(x, y) * scale).toPoint()).alpha() > 200;
      };
      const int right = widget->width() - 1;
      const int bottom = widget->height() - 1;
      for (const bool far : {false, true}) {
        const auto at = [&](double x, double y) {
          return far ? isGround(right - x, bottom - y) : isGround(x, y);
        };
        EXPECT_TRUE(at(6.5, 40) && at(40, 6.5) && at(10.5, 10.5)) << far;
        EXPECT_FALSE(at(5, 40) || at(40, 5) || at(8.5, 8.5)) << far;
      }
    }
  }
}

TEST_F(PanelDrawingTest, TitlesKeepInsideThePanelAndTellTheirWholeText) {
  const PanelSection::Entry entry{"a", "A", {}, false, false};
  PanelView view;
  view.sections = {{"Work", {entry}}, {longTitle, {entry}}};
  show(view);
  EXPECT_EQ(widget->width(), 18 + 118 + 18) << "as wide as three entries";
  EXPECT_EQ(title(1)->width(), 118);
  EXPECT_EQ(title(0)->text(), "Work");
  EXPECT_EQ(title(0)->toolTip(), "");
  EXPECT_TRUE(title(1)->text().startsWith("MM") && title(1)->text().endsWith(u'…'));
  EXPECT_EQ(title(1)->toolTip(), plainToolTip(QString::fromStdString(longTitle)));
  EXPECT_EQ(title(1)->accessibleName(), QString::fromStdString(longTitle));

  view.columns = 20;
  view.sections = {{longTitle, std::vector(20, entry)}};
  show(view);
  EXPECT_EQ(title()->width(), 20 * 34 + 19 * 8);
  show(view, 300);
  const auto atLeft = [this](const QWidget* part) { return part->mapTo(widget, QPoint()).x(); };
  const int left = atLeft(title());
  EXPECT_TRUE(left >= 18 && left + title()->width() <= 300 - 18);
  auto* const bar = widget->findChildren<QScrollBar*>().value(1);
  ASSERT_TRUE(bar->orientation() == Qt::Horizontal && bar->maximum() > 0);
  bar->setValue(bar->maximum());
  EXPECT_EQ(atLeft(title()), left) << "only the grid scrolls";
  EXPECT_LT(atLeft(widget->findChild<PanelCell*>()), 0);
}

TEST(FieldTest, ShowsItsBeginningUnlessItIsEdited) {
  QWidget window;
  Field field(110, "Group", &window);
  field.setText(QString::fromStdString(longTitle));
  EXPECT_EQ(field.cursorPosition(), 0);
  window.show();
  QApplication::setActiveWindow(&window);
  field.setFocus();
  field.insert("x");
  EXPECT_EQ(field.cursorPosition(), 1) << "as typed";
  field.end(false);
  field.clearFocus();
  EXPECT_EQ(field.cursorPosition(), 0);
}

}  // namespace
}  // namespace tarnwick
