#include "bar/row/row_pointer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::bar {

RowPointer::Outcome RowPointer::press(Point at, std::uint32_t modifiers, Hand hand) {
  Outcome outcome = cancel();
  const auto item = row_.itemAt(at);
  if (!item) return outcome;
  Press press;
  press.item = *item;
  press.hand = hand;
  press.start = at;
  press.centre = row_.frame(*item)->midX();
  press.grabOffset = at.x - press.centre;
  press.super = (modifiers & superModifier) != 0;
  if (press.super) press.order = row_.rememberedOrder();
  press.inSight = isInSight(*item);
  pressed_ = std::move(press);
  return outcome;
}

RowPointer::Outcome RowPointer::drag(Point to) {
  Outcome outcome;
  if (!pressed_ || !pressed_->super) return outcome;
  if (!pressed_->dragging) {
    const double distance = std::hypot(to.x - pressed_->start.x, to.y - pressed_->start.y);
    if (distance < dragThreshold) return outcome;
    pressed_->dragging = true;
  }
  outcome.layoutChanged = true;
  pressed_->centre = to.x - pressed_->grabOffset;

  // Neighbours are compared at their places in the row, which a swap moves by the dragged item's
  // length: a swap is never undone at the same pointer position.
  const auto order = row_.order();
  auto index = std::find(order.begin(), order.end(), pressed_->item) - order.begin();
  const auto count = static_cast<std::ptrdiff_t>(order.size());
  const auto at = [&](std::ptrdiff_t i) { return order[static_cast<std::size_t>(i)]; };
  std::ptrdiff_t left = index - 1;
  for (; left >= 0 && mayPassLeft(at(left)); --left) row_.moveLeft(pressed_->item);
  if (left == index - 1) {
    for (std::ptrdiff_t right = index + 1; right < count && mayPassRight(at(right)); ++right) {
      row_.moveRight(pressed_->item);
    }
  }
  pressed_->inSight = isInSight(pressed_->item);
  return outcome;
}

RowPointer::Outcome RowPointer::release(Point at) {
  Outcome outcome = drag(at);
  if (!pressed_) return outcome;
  const Press press = *std::move(pressed_);
  pressed_.reset();
  if (press.dragging) {
    outcome.orderSettled = true;
  } else if (!press.super && row_.itemAt(at) == press.item) {
    outcome.clickedItem = press.item;
  }
  return outcome;
}

RowPointer::Outcome RowPointer::cancel() {
  Outcome outcome;
  if (pressed_ && pressed_->dragging) {
    row_.restorePlace(pressed_->item, pressed_->order);
    outcome.layoutChanged = true;
    outcome.orderSettled = true;
  }
  pressed_.reset();
  return outcome;
}

RowPointer::Outcome RowPointer::forget(ItemId id) {
  return pressed_ && pressed_->item == id ? cancel() : Outcome{};
}

RowPointer::Outcome RowPointer::rowChanged() {
  if (!pressed_) return {};
  const bool inSight = isInSight(pressed_->item);
  const bool hasRoom = row_.length(pressed_->item) > 0;
  if (!hasRoom || (pressed_->inSight && !inSight)) return cancel();
  pressed_->inSight = inSight;
  return {};
}

bool RowPointer::isInSight(ItemId id) const {
  const auto frame = row_.frame(id);
  return frame && frame->maxX() > 0;
}

bool RowPointer::mayPassLeft(ItemId neighbour) const {
  const Rect frame = *row_.frame(neighbour);
  if (pressed_->centre >= frame.midX()) return false;
  if (pressed_->hand == Hand::posted) return true;
  const double heldEnd = frame.x + row_.length(pressed_->item);  // its right end, once there
  return frame.maxX() > 0 && heldEnd > 0;
}

bool RowPointer::mayPassRight(ItemId neighbour) const {
  const Rect frame = *row_.frame(neighbour);
  if (pressed_->centre <= frame.midX()) return false;
  const double neighbourEnd = row_.frame(pressed_->item)->x + frame.width;  // once it is there
  return pressed_->hand == Hand::posted || neighbourEnd > 0;
}

std::optional<ItemId> RowPointer::draggedItem() const {
  if (!pressed_ || !pressed_->dragging) return std::nullopt;
  return pressed_->item;
}

double RowPointer::dragOffset() const {
  const auto item = draggedItem();
  const auto frame = item ? row_.frame(*item) : std::nullopt;
  return frame ? pressed_->centre - frame->midX() : 0;
}

}  // namespace tarnwick::bar
