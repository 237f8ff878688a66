#include "bar/placeholder.h"

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

}  // namespace tarnwick::bar
