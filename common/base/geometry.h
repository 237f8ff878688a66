#pragma once

namespace tarnwick {

// Points, not pixels. One coordinate space everywhere: the origin is the top-left corner of the
// primary monitor and y grows downwards.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double minX() const { return x; }
  double maxX() const { return x + width; }
  double midX() const { return x + width / 2; }
  double minY() const { return y; }
  double maxY() const { return y + height; }
  double midY() const { return y + height / 2; }
  bool contains(Point p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
  bool operator==(const Rect&) const = default;
};

}  // namespace tarnwick
