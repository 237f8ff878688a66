#pragma once

#include <cstdint>
#include <optional>

#include "common/base/geometry.h"

namespace tarnwick {

enum class PointerEventType : std::uint8_t { leftDown, leftDragged, leftUp };

// Modifier bits of an event. Command is the Super key here.
struct ModifierFlags {
  static constexpr std::uint32_t shift = 1;
  static constexpr std::uint32_t control = 2;
  static constexpr std::uint32_t option = 4;
  static constexpr std::uint32_t command = 8;
};

struct PointerEvent {
  PointerEventType type = PointerEventType::leftDown;
  Point location;
  std::uint32_t flags = 0;  // exactly these modifiers, whatever keys the user holds
  bool operator==(const PointerEvent&) const = default;
};

// Pointer events of the left button that the bar treats as the user's own.
class PointerEvents {
 public:
  virtual ~PointerEvents() = default;

  // Where the user's pointer is. Absent where posted events do not move the user's pointer, so that
  // there is nothing to put back.
  virtual std::optional<Point> location() = 0;

  // Discarded silently without permission.
  virtual void post(const PointerEvent& event) = 0;

  // Puts the visible pointer there without an event.
  virtual void warp(Point to) = 0;
};

}  // namespace tarnwick
