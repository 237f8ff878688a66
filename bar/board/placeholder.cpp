#include "bar/board/placeholder.h"

#include <QFont>
#include <QGuiApplication>
#include <QPen>
#include <algorithm>

namespace tarnwick::bar {

void paintPlaceholder(QPainter& painter, const QRectF& rect, const QString& name,
                      const QColor& foreground) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(foreground, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(1.5, 1.5, -1.5, -1.5), 3, 3);
  QFont font = QGuiApplication::font();
  font.setPixelSize(std::max(6, static_cast<int>(rect.height() * 0.55)));
  painter.setFont(font);
  painter.drawText(rect, Qt::AlignCenter, name.left(1).toUpper());
}

bool isWhollyTransparent(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    if (std::any_of(row, row + picture.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
      return false;
  }
  return true;
}

}  // namespace tarnwick::bar
