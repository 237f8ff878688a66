#pragma once

#include <QImage>

#include "core/ports/drawing.h"

namespace tarnwick {

// The drawing as pixels: R, G, B, A bytes, premultiplied, rows without padding, on a transparent
// ground. Its width and height are the drawing's times `pixelsPerPoint`, rounded up. Null when the
// drawing is empty or larger than 1,000 points on a side.
QImage renderDrawing(const Drawing& drawing, double pixelsPerPoint);

}  // namespace tarnwick
