#include "utility/pictures/render_drawing.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double largestSide = 1000;  // points

QColor color(const Color& color) {
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

struct ShapePainter {
  QPainter& painter;

  void operator()(const StrokedPath& path) const {
    if (path.points.empty()) return;
    QPainterPath line({path.points.front().x, path.points.front().y});
    for (const Point& point : path.points) line.lineTo(point.x, point.y);
    painter.strokePath(
        line, QPen(color(path.color), path.lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  }

  void operator()(const GradientRoundedRect& shape) const {
    QLinearGradient gradient(0, shape.rect.minY(), 0, shape.rect.maxY());
    gradient.setColorAt(0, color(shape.top));
    gradient.setColorAt(1, color(shape.bottom));
    QPainterPath path;
    path.addRoundedRect({shape.rect.x, shape.rect.y, shape.rect.width, shape.rect.height},
                        shape.cornerRadius, shape.cornerRadius);
    painter.fillPath(path, gradient);
  }
};

}  // namespace

QImage renderDrawing(const Drawing& drawing, double pixelsPerPoint) {
  const auto [width, height] = drawing.size;
  if (!(width > 0 && height > 0 && width <= largestSide && height <= largestSide)) return {};
  QImage image(static_cast<int>(std::ceil(width * pixelsPerPoint)),
               static_cast<int>(std::ceil(height * pixelsPerPoint)),
               QImage::Format_RGBA8888_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(image.width() / width, image.height() / height);
  for (const auto& shape : drawing.shapes) std::visit(ShapePainter{painter}, shape);
  return image;
}

}  // namespace tarnwick
