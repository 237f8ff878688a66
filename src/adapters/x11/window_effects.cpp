#include "adapters/x11/window_effects.h"

#include <xcb/shape.h>

#include <cmath>
#include <vector>

#include "adapters/x11/server.h"

namespace tarnwick::x11 {

namespace {

// One rectangle for each row of pixels in the corners and one for what lies between.
std::vector<xcb_rectangle_t> roundedRectangle(const QRect& outline, int radius) {
  std::vector<xcb_rectangle_t> rectangles;
  const auto add = [&](int top, int height, int inset) {
    rectangles.push_back({static_cast<std::int16_t>(outline.x() + inset),
                          static_cast<std::int16_t>(top),
                          static_cast<std::uint16_t>(outline.width() - 2 * inset),
                          static_cast<std::uint16_t>(height)});
  };
  const auto inset = [radius](int row) {
    const double rise = radius - (row + 0.5);
    return static_cast<int>(std::lround(radius - std::sqrt(radius * radius - rise * rise)));
  };
  for (int row = 0; row < radius; ++row) add(outline.top() + row, 1, inset(row));
  add(outline.top() + radius, outline.height() - 2 * radius, 0);
  for (int row = radius - 1; row >= 0; --row) add(outline.bottom() - row, 1, inset(row));
  return rectangles;
}

}  // namespace

bool isComposited() {
  xcb_connection_t* const connection = server();
  if (!connection) return false;
  constexpr char name[] = "_NET_WM_CM_S0";
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, 0, sizeof name - 1, name), nullptr));
  if (!atom) return false;
  const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

void cutWindow(std::uint32_t window, const std::optional<QRect>& outline, int cornerRadius) {
  xcb_connection_t* const connection = server();
  if (!connection) return;
  for (const auto kind : {XCB_SHAPE_SK_BOUNDING, XCB_SHAPE_SK_INPUT}) {
    if (!outline || outline->width() < 2 * cornerRadius || outline->height() < 2 * cornerRadius) {
      xcb_shape_mask(connection, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
      continue;
    }
    const auto rectangles = roundedRectangle(*outline, cornerRadius);
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED, window, 0,
                         0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
  }
}

}  // namespace tarnwick::x11
