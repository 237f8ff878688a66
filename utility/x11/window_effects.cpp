#include "utility/x11/window_effects.h"

#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "common/x11/server.h"

namespace tarnwick::x11 {

namespace {

constexpr std::uint32_t mostNumbers = 64;

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

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
  if (!connection) return XCB_ATOM_NONE;
  const auto length = static_cast<std::uint16_t>(name.size());
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, 0, length, name.data()), nullptr));
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// A property of 32-bit numbers; empty when the window does not have it.
std::vector<std::uint32_t> numbers(xcb_connection_t* connection, xcb_window_t window,
                                   std::string_view name) {
  const xcb_atom_t property = atomOf(connection, name);
  if (property == XCB_ATOM_NONE) return {};
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection,
      xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, mostNumbers),
      nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

// A request of EWMH about a window, as a client message to the root window.
void askWindowManager(xcb_connection_t* connection, xcb_window_t window, std::string_view request,
                      const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atomOf(connection, request);
  if (event.type == XCB_ATOM_NONE) return;
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(connection, 0, rootOf(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

}  // namespace

bool isComposited() {
  xcb_connection_t* const connection = server();
  const xcb_atom_t selection = atomOf(connection, "_NET_WM_CM_S0");
  if (selection == XCB_ATOM_NONE) return false;
  const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, selection), nullptr));
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

bool isMinimized(std::uint32_t window) {
  xcb_connection_t* const connection = server();
  const xcb_atom_t hidden = atomOf(connection, "_NET_WM_STATE_HIDDEN");
  const auto states = numbers(connection, window, "_NET_WM_STATE");
  return hidden != XCB_ATOM_NONE && std::find(states.begin(), states.end(), hidden) != states.end();
}

bool unmaximize(std::uint32_t window) {
  constexpr std::uint32_t remove = 0;
  constexpr std::uint32_t fromApplication = 1;
  xcb_connection_t* const connection = server();
  const auto states = numbers(connection, window, "_NET_WM_STATE");
  const xcb_atom_t upright = atomOf(connection, "_NET_WM_STATE_MAXIMIZED_VERT");
  const xcb_atom_t across = atomOf(connection, "_NET_WM_STATE_MAXIMIZED_HORZ");
  if (std::none_of(states.begin(), states.end(), [&](xcb_atom_t state) {
        return state != XCB_ATOM_NONE && (state == upright || state == across);
      })) {
    return false;
  }
  askWindowManager(connection, window, "_NET_WM_STATE", {remove, upright, across, fromApplication});
  xcb_flush(connection);
  return true;
}

void bringToUser(std::uint32_t window) {
  constexpr std::uint32_t fromPager = 2;
  constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
  xcb_connection_t* const connection = server();
  if (!connection) return;
  const auto here = numbers(connection, rootOf(connection), "_NET_CURRENT_DESKTOP");
  const auto there = numbers(connection, window, "_NET_WM_DESKTOP");
  if (!here.empty() && !there.empty() && there[0] != here[0] && there[0] != everyDesktop) {
    askWindowManager(connection, window, "_NET_WM_DESKTOP", {here[0], fromPager});
  }
  askWindowManager(connection, window, "_NET_ACTIVE_WINDOW", {fromPager});
  xcb_flush(connection);
}

}  // namespace tarnwick::x11
