#include "bar/x11/free_hand.h"

#include <chrono>
#include <utility>

#include "bar/x11/xcb.h"

namespace tarnwick::bar::x11 {

using namespace std::chrono_literals;

namespace {

constexpr auto interval = 30ms;
constexpr int mostLooks = 1000;  // half a minute

// The wheel's buttons are never held.
bool isButtonDown() {
  constexpr std::uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
  if (!connection()) return false;
  const auto pointer =
      Pending<xcb_query_pointer_reply>(xcb_query_pointer(connection(), rootWindow())).take();
  return pointer && (pointer->mask & buttons) != 0;
}

}  // namespace

FreeHand::FreeHand() {
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { look(); });
}

void FreeHand::whenFree(std::function<void()> free) {
  free_ = std::move(free);
  looks_ = 0;
  look();
}

void FreeHand::forget() {
  timer_.stop();
  free_ = nullptr;
}

void FreeHand::look() {
  if (isButtonDown()) return ++looks_ < mostLooks ? timer_.start(interval) : forget();
  timer_.stop();
  if (const auto free = std::exchange(free_, nullptr)) free();
}

}  // namespace tarnwick::bar::x11
