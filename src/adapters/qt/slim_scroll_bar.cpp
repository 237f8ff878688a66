#include "adapters/qt/slim_scroll_bar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include "adapters/qt/tones.h"

namespace tarnwick {

namespace {

constexpr qreal handleInset = 3;  // on each side
constexpr qreal restingOpacity = 0.7;

}  // namespace

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
  setAttribute(Qt::WA_Hover);
  setAttribute(Qt::WA_OpaquePaintEvent, false);
}

// The handle lies where the style expects it when it is dragged.
void SlimScrollBar::paintEvent(QPaintEvent*) {
  if (minimum() == maximum()) return;
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRectF handle =
      style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
  const QRectF shape(handleInset, handle.top(), width() - 2 * handleInset, handle.height());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(tonesOf(palette()).scroller);
  if (!underMouse() && !isSliderDown()) painter.setOpacity(restingOpacity);
  painter.drawRoundedRect(shape, shape.width() / 2, shape.width() / 2);
}

}  // namespace tarnwick
