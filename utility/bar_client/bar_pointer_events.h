#pragma once

#include "adapters/bar/bar_connection.h"
#include "platform/pointer_events.h"

namespace tarnwick {

// Pointer events that the bar handles as if its window had got them. The user's pointer and keys
// take no part in it.
class BarPointerEvents : public PointerEvents {
 public:
  explicit BarPointerEvents(BarConnection& bar) : bar_(bar) {}

  std::optional<Point> location() override { return std::nullopt; }
  void post(const PointerEvent& event) override;
  void warp(Point) override {}

 private:
  BarConnection& bar_;
};

}  // namespace tarnwick
