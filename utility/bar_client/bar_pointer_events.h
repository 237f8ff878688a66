#pragma once

#include "core/ports/pointer_events.h"
#include "utility/bar_client/bar_connection.h"

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
