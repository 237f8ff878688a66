#include "utility/x11/windows.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "common/x11/server.h"

namespace tarnwick::x11 {

namespace {

constexpr std::uint32_t mostDesktops = 64;
constexpr std::size_t atomCount = 3;
enum AtomName : std::size_t { activeWindow, workAreas, currentDesktop };
constexpr std::array<std::string_view, atomCount> atomNames = {
    "_NET_ACTIVE_WINDOW", "_NET_WORKAREA", "_NET_CURRENT_DESKTOP"};

// Qt's own connection to the server and what is asked for by name on it.
struct Server {
  xcb_connection_t* connection = nullptr;
  xcb_window_t root = XCB_WINDOW_NONE;
  std::array<xcb_atom_t, atomCount> atoms{};

  static const Server* get() {
    static const Server instance;
    return instance.connection ? &instance : nullptr;
  }

  xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                std::uint32_t length) const {
    return xcb_get_property(connection, 0, window, name, type, 0, length);
  }

  std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t cookie) const {
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
  }

 private:
  Server() {
    connection = server();
    if (!connection) return;
    root = rootOf(connection);
    std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
    for (std::size_t i = 0; i < atomCount; ++i) {
      cookies[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(atomNames[i].size()),
                                   atomNames[i].data());
    }
    for (std::size_t i = 0; i < atomCount; ++i) {
      const Reply<xcb_intern_atom_reply_t> reply(
          xcb_intern_atom_reply(connection, cookies[i], nullptr));
      if (reply) atoms[i] = reply->atom;
    }
  }
};

}  // namespace

std::optional<QRect> workArea() {
  const Server* server = Server::get();
  if (!server) return std::nullopt;
  const auto areasCookie =
      server->ask(server->root, server->atoms[workAreas], XCB_ATOM_CARDINAL, mostDesktops * 4);
  const auto desktopCookie =
      server->ask(server->root, server->atoms[currentDesktop], XCB_ATOM_CARDINAL, 1);
  const auto areas = server->numbers(areasCookie);
  const auto desktop = server->numbers(desktopCookie);
  if (areas.size() < 4) return std::nullopt;
  std::size_t first = desktop.empty() ? 0 : std::size_t{desktop[0]} * 4;
  if (first + 4 > areas.size()) first = 0;  // one area for all desktops
  const auto side = [&](std::size_t i) { return static_cast<int>(areas[first + i]); };
  return QRect(side(0), side(1), side(2), side(3));
}

std::optional<QPoint> activeWindowCentre() {
  const Server* server = Server::get();
  if (!server) return std::nullopt;
  const auto active =
      server->numbers(server->ask(server->root, server->atoms[activeWindow], XCB_ATOM_WINDOW, 1));
  if (active.empty() || active[0] == XCB_WINDOW_NONE) return std::nullopt;
  const auto geometryCookie = xcb_get_geometry(server->connection, active[0]);
  const auto originCookie =
      xcb_translate_coordinates(server->connection, active[0], server->root, 0, 0);
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(server->connection, geometryCookie, nullptr));
  const Reply<xcb_translate_coordinates_reply_t> origin(
      xcb_translate_coordinates_reply(server->connection, originCookie, nullptr));
  if (!geometry || !origin) return std::nullopt;
  return QPoint(origin->dst_x + geometry->width / 2, origin->dst_y + geometry->height / 2);
}

}  // namespace tarnwick::x11
