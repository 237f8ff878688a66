#include "bar/x11/pointer.h"

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

bool isButtonDown() {
  constexpr std::uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
  if (!connection()) return false;
  const auto pointer =
      Pending<xcb_query_pointer_reply>(xcb_query_pointer(connection(), rootWindow())).take();
  return pointer && (pointer->mask & buttons) != 0;
}

}  // namespace tarnwick::bar::x11
