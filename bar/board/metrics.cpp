#include "bar/board/metrics.h"

#include <algorithm>

namespace tarnwick::bar {

Metrics& Metrics::shared() {
  static Metrics metrics;
  return metrics;
}

void Metrics::setIconSide(double points) {
  const double side = std::clamp(points, 12.0, 32.0);
  if (side == iconSide_) return;
  iconSide_ = side;
  emit changed();
}

}  // namespace tarnwick::bar
