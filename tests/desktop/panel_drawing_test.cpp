#include <gtest/gtest.h>

#include <QApplication>
#include <QBitmap>
#include <QLabel>
#include <QScrollBar>
#include <QTemporaryDir>

#include "common/look/tool_tip.h"
#include "utility/panel/panel_content.h"
#include "utility/panel/qt_panel_window.h"
#include "utility/settings/form_controls.h"

namespace tarnwick {
namespace {

const std::string longTitle(200, 'M');

Picture pictureOf(QColor color, int width, int height) {
  QImage image(width, height, QImage::Format_RGBA8888);
  image.fill(color);
  return {std::make_shared<Bitmap>(
              Bitmap{width, height, {image.bits(), image.bits() + image.sizeInBytes()}}),
          {static_cast<double>(width), static_cast<double>(height)}};
}

class PanelDrawingTest : public testing::Test {
 protected:
  void show(const PanelView& view, double width = 0) {
    window->setRootView(view);
    const Size size = window->fittingSize();
    window->setContentSize({width > 0 ? width : size.width, size.height});
    window->orderFrontRegardless();
    for (QWidget* const top : QApplication::topLevelWidgets()) {
      if (top->isVisible()) widget = top;
    }
    QApplication::processEvents();
  }
  QLabel* title(int index = 0) { return widget->findChildren<QLabel*>().value(index); }

  std::unique_ptr<PanelWindow> window =
      QtPanelWindows({[] { return true; }, [](WId, const std::optional<QRect>&, int) {}})
          .makePanelWindow();
  QWidget* widget = nullptr;
};

TEST_F(PanelDrawingTest, EverythingLiesWhereItsMeasuresSayAtEveryScale) {
  const QTemporaryDir folder;
  const QString icon = folder.filePath("icon.png");
  QImage plain(52, 52, QImage::Format_RGB32);
  plain.fill(Qt::magenta);
  ASSERT_TRUE(plain.save(icon));
  const PanelSection ungrouped{{},
                               {{"a", "A", pictureOf(Qt::red, 34, 28), true, false},
                                {"b", "B", pictureOf(Qt::green, 68, 32), true, false},
                                {"c", "C", pictureOf(Qt::blue, 20, 14), true, false}}};
  const PanelSection group{"Group",
                           {{"d", "D", ThemeIcon{icon.toStdString()}, false, false},
                            {"e", "E", pictureOf(Qt::cyan, 28, 56), true, false}}};
  for (const auto& [scale, statusStyle] : {std::pair(1, false), {2, false}, {2, true}}) {
    SCOPED_TRACE(testing::Message() << scale << ' ' << statusStyle);
    show({{ungrouped, group}, 2, statusStyle, {}});
    // Margin 6, padding 12; two rows of 30 with 8 between, then 10; the title, then 6.
    EXPECT_EQ(title()->mapTo(widget, QPoint()), QPoint(18, 96));
    const int below = 96 + title()->height() + 6;
    EXPECT_EQ(widget->size(), QSize(112, below + 48));
    QImage image(widget->size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    widget->render(&image);
    const std::pair<QColor, QRect> places[] = {
        {Qt::red, {18, 19, 34, 28}},
        {Qt::green, {60, 25, 34, 16}},
        {Qt::blue, {25, 64, 20, 14}},
        {Qt::magenta, statusStyle ? QRect(25, below + 5, 20, 20) : QRect(22, below + 2, 26, 26)},
        {Qt::cyan, {70, below + 1, 14, 28}},
    };
    for (const auto& [color, place] : places) {
      const QImage mask = image.createMaskFromColor(color.rgb(), Qt::MaskOutColor);
      EXPECT_EQ(QRegion(QBitmap::fromImage(mask)).boundingRect(),
                QRect(place.topLeft() * scale, place.size() * scale))
          << qPrintable(color.name());
    }
    // The ground has corners of radius 12 and nothing but a shadow around it.
    const auto isGround = [&](double x, double y) {
      return image.pixelColor((QPointF(x, y) * scale).toPoint()).alpha() > 200;
    };
    for (const bool far : {false, true}) {
      const auto at = [&](double x, double y) {
        return far ? isGround(111 - x, below + 47 - y) : isGround(x, y);
      };
      EXPECT_TRUE(at(6.5, 40) && at(40, 6.5) && at(10.5, 10.5)) << far;
      EXPECT_FALSE(at(5, 40) || at(40, 5) || at(8.5, 8.5)) << far;
    }
  }
}

TEST_F(PanelDrawingTest, TitlesKeepInsideThePanelAndTellTheirWholeText) {
  const PanelSection::Entry entry{"a", "A", pictureOf(Qt::red, 34, 28), true, false};
  show({{{"Work", {entry}}, {longTitle, {entry}}}, 5, false, {}});
  EXPECT_EQ(widget->width(), 18 + 118 + 18) << "as wide as three entries";
  EXPECT_EQ(title(1)->width(), 118);
  EXPECT_EQ(title(0)->text(), "Work");
  EXPECT_EQ(title(0)->toolTip(), "");
  EXPECT_TRUE(title(1)->text().startsWith("MM") && title(1)->text().endsWith(u'…'));
  EXPECT_EQ(title(1)->toolTip(), plainToolTip(QString::fromStdString(longTitle)));

  const PanelView wide{{{longTitle, std::vector(20, entry)}}, 20, false, {}};
  show(wide);
  EXPECT_EQ(title()->width(), 20 * 34 + 19 * 8);
  show(wide, 300);
  const auto atLeft = [this](const QWidget* part) { return part->mapTo(widget, QPoint()).x(); };
  const int left = atLeft(title());
  EXPECT_TRUE(left >= 18 && left + title()->width() <= 300 - 18);
  QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
  widget->render(&image);
  const QImage mask = image.createMaskFromColor(qRgb(255, 0, 0), Qt::MaskOutColor);
  const QRect drawn = QRegion(QBitmap::fromImage(mask)).boundingRect();
  EXPECT_EQ(std::pair(drawn.left(), drawn.right()), std::pair(18, 299 - 6)) << "the margins stay";
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
