#pragma once

#include <QPainter>
#include <QWidget>

#include "utility/style/tones.h"

namespace tarnwick {

// "exclamationmark.triangle"
class WarningTriangle : public QWidget {
 public:
  explicit WarningTriangle(int height) {  // points
    setFixedSize(height * designWidth / designHeight, height);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal scale = height() / qreal{designHeight};
    painter.scale(scale, scale);
    QPen pen(tonesOf(palette()).warning, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.drawPolygon(QPolygonF{QPointF(10, 1.5), QPointF(18.6, 16.5), QPointF(1.4, 16.5)});
    pen.setWidthF(1.8);
    painter.setPen(pen);
    painter.drawLine(QPointF(10, 6.8), QPointF(10, 10.8));
    painter.drawPoint(QPointF(10, 13.8));
  }

 private:
  static constexpr int designWidth = 20;
  static constexpr int designHeight = 18;
};

}  // namespace tarnwick
