#include "utility/style/slim_scroll_bar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include "utility/style/tones.h"

namespace tarnwick {

namespace {

constexpr qreal handleInset = 3;  // on each side
constexpr qreal restingOpacity = 0.7;

}  // namespace

SlimScrollBar::SlimScrollBar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent) {
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
  const bool upright = orientation() == Qt::Vertical;
  const QRectF shape =
      upright ? QRectF(handleInset, handle.top(), width() - 2 * handleInset, handle.height())
              : QRectF(handle.left(), handleInset, handle.width(), height() - 2 * handleInset);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(tonesOf(palette()).scroller);
  if (!underMouse() && !isSliderDown()) painter.setOpacity(restingOpacity);
  const qreal radius = (upright ? shape.width() : shape.height()) / 2;
  painter.drawRoundedRect(shape, radius, radius);
}

}  // namespace tarnwick
