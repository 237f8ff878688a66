#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick {

// Channels from 0 to 1, not premultiplied, sRGB.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  bool operator==(const Color&) const = default;
};

// An open path with round caps and joins.
struct StrokedPath {
  std::vector<Point> points;
  double lineWidth = 1;
  Color color;
  bool operator==(const StrokedPath&) const = default;
};

// A rounded rectangle filled from top to bottom.
struct GradientRoundedRect {
  Rect rect;
  double cornerRadius = 0;
  Color top;
  Color bottom;
  bool operator==(const GradientRoundedRect&) const = default;
};

// A picture as a list of shapes, drawn in order at whatever scale it is shown. Its coordinates
// start at its own top-left corner, y down. A template is tinted to suit what it stands on: only
// its alpha counts.
struct Drawing {
  Size size;
  bool isTemplate = false;
  std::vector<std::variant<StrokedPath, GradientRoundedRect>> shapes;
  bool operator==(const Drawing&) const = default;
};

}  // namespace tarnwick
