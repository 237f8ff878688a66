#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace tarnwick::bar {

// What stands in `rect`, in points, for an icon that cannot be had: a frame with the initial of
// `name`, so that the item does not look like a gap.
void paintPlaceholder(QPainter& painter, const QRectF& rect, const QString& name,
                      const QColor& foreground);

// Nothing of the picture, premultiplied ARGB32, is to be seen.
bool isWhollyTransparent(const QImage& picture);

}  // namespace tarnwick::bar
