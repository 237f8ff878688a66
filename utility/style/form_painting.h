#pragma once

#include <QFont>
#include <QPainter>
#include <QWidget>

namespace tarnwick {

// Around a shape with that corner radius, at its outside.
void paintRing(QPainter& painter, const QRectF& shape, qreal radius, const QColor& color);
// The part of a control without the room for its ring.
QRectF shapeOf(const QWidget& widget);
// Of buttons, pickers and fields, in points, without the room for their rings.
int controlHeight(const QWidget& widget);

}  // namespace tarnwick
