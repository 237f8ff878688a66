#include "core/menubar/item_mover.h"

#include <chrono>
#include <cmath>

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr int dragSteps = 6;
constexpr auto pauseAfterEvent = 12ms;
constexpr auto settlingPause = 150ms;        // for the bar to lay the item out at its new place
constexpr double minimumDisplacement = 8.0;  // points

}  // namespace

bool ItemMover::move(const MenuBarItemInfo& item, double toX) const {
  const double startX = item.frame.midX();
  const double y = item.frame.midY();
  if (startX == toX) return true;

  const auto pointerBefore = pointer_.location();
  post(PointerEventType::leftDown, {startX, y});
  for (int step = 1; step <= dragSteps; ++step) {
    post(PointerEventType::leftDragged, {startX + (toX - startX) * step / dragSteps, y});
  }
  post(PointerEventType::leftUp, {toX, y});
  loop_.pause(settlingPause);

  const auto frame = scanner_.frame(item.element);
  const bool moved = frame && std::abs(frame->midX() - startX) > minimumDisplacement;
  if (pointerBefore) pointer_.warp(*pointerBefore);
  return moved;
}

void ItemMover::post(PointerEventType type, Point location) const {
  pointer_.post({type, location, ModifierFlags::command});
  loop_.pause(pauseAfterEvent);
}

}  // namespace tarnwick
