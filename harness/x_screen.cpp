#include "harness/x_screen.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace tarnwick::test {
namespace {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

struct Display {
  explicit Display(const QString& name)
      : connection(xcb_connect(name.toLatin1().constData(), nullptr)) {
    if (xcb_connection_has_error(connection.get()) == 0) {
      screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    }
  }

  std::unique_ptr<xcb_connection_t, Disconnect> connection;
  xcb_screen_t* screen = nullptr;  // nullptr when there is no such display
};

xcb_atom_t atomOf(xcb_connection_t* x, const char* name) {
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
      x, xcb_intern_atom(x, 0, static_cast<uint16_t>(strlen(name)), name), nullptr));
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray propertyOf(xcb_connection_t* x, xcb_window_t window, const char* name) {
  const Reply<xcb_get_property_reply_t> property(xcb_get_property_reply(
      x, xcb_get_property(x, 0, window, atomOf(x, name), XCB_ATOM_ANY, 0, 64), nullptr));
  if (!property) return {};
  return {static_cast<const char*>(xcb_get_property_value(property.get())),
          xcb_get_property_value_length(property.get())};
}

}  // namespace

bool windowManagerRuns(const QString& name) {
  const Display display(name);
  if (display.screen == nullptr) {
    return false;
  }
  return propertyOf(display.connection.get(), display.screen->root, "_NET_SUPPORTING_WM_CHECK")
             .size() == 4;
}

QRect placeOf(const QString& name, std::uint32_t window) {
  const Display display(name);
  if (display.screen == nullptr) return {};
  xcb_connection_t* x = display.connection.get();
  const Reply<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
  const Reply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
      x, xcb_translate_coordinates(x, window, display.screen->root, 0, 0), nullptr));
  if (!size || !corner) return {};
  return {corner->dst_x, corner->dst_y, size->width, size->height};
}

std::vector<std::uint32_t> numbersOf(const QString& name, std::uint32_t window,
                                     const char* property) {
  const Display display(name);
  if (display.screen == nullptr) return {};
  const QByteArray bytes =
      propertyOf(display.connection.get(), window == 0 ? display.screen->root : window, property);
  std::vector<std::uint32_t> numbers(static_cast<std::size_t>(bytes.size()) / 4);
  if (!numbers.empty()) memcpy(numbers.data(), bytes.constData(), numbers.size() * 4);
  return numbers;
}

std::uint32_t atomOf(const QString& display, const char* name) {
  const Display server(display);
  return server.screen ? atomOf(server.connection.get(), name) : xcb_atom_t{XCB_ATOM_NONE};
}

void askWindowManager(const QString& name, std::uint32_t window, const char* request,
                      const std::array<std::uint32_t, 5>& data) {
  const Display display(name);
  if (display.screen == nullptr) return;
  xcb_connection_t* x = display.connection.get();
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window == 0 ? display.screen->root : window;
  event.type = atomOf(x, request);
  memcpy(event.data.data32, data.data(), sizeof event.data.data32);
  // Waits until the server has it: what a client has left behind when it goes may get lost.
  const Reply<xcb_generic_error_t> error(xcb_request_check(
      x, xcb_send_event_checked(
             x, 0, display.screen->root,
             XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
             reinterpret_cast<const char*>(&event))));
}

QImage grabScreen(const QString& name) {
  const Display display(name);
  if (display.screen == nullptr) {
    return {};
  }
  xcb_connection_t* x = display.connection.get();
  const uint16_t width = display.screen->width_in_pixels;
  const uint16_t height = display.screen->height_in_pixels;
  const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
      x,
      xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, display.screen->root, 0, 0, width, height, ~0U),
      nullptr));
  if (!image || xcb_get_image_data_length(image.get()) != 4 * width * height) {
    return {};
  }
  return QImage(xcb_get_image_data(image.get()), width, height, QImage::Format_RGB32).copy();
}

std::vector<PopupWindow> popups(const QString& name) {
  std::vector<PopupWindow> found;
  const Display display(name);
  if (display.screen == nullptr) return found;
  xcb_connection_t* x = display.connection.get();
  const Reply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(x, xcb_query_tree(x, display.screen->root), nullptr));
  if (!tree) return found;
  const xcb_window_t* const windows = xcb_query_tree_children(tree.get());
  for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, windows[i]), nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(x, xcb_get_geometry(x, windows[i]), nullptr));
    if (!attributes || !geometry || !attributes->override_redirect ||
        attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT || geometry->width < 8) {
      continue;
    }
    const QByteArray pid = propertyOf(x, windows[i], "_NET_WM_PID");
    PopupWindow window{{geometry->x, geometry->y, geometry->width, geometry->height},
                       0,
                       QString::fromUtf8(propertyOf(x, windows[i], "WM_NAME"))};
    if (pid.size() == 4) {
      std::uint32_t value = 0;
      memcpy(&value, pid.constData(), sizeof value);
      window.pid = value;
    }
    found.push_back(window);
  }
  return found;
}

struct PropertyWatch::Display : test::Display {
  using test::Display::Display;
};

PropertyWatch::PropertyWatch(const QString& display, std::uint32_t window, const char* property)
    : display_(std::make_unique<Display>(display)) {
  xcb_connection_t* x = display_->connection.get();
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  const Reply<xcb_generic_error_t> error(xcb_request_check(
      x, xcb_change_window_attributes_checked(x, window, XCB_CW_EVENT_MASK, &events)));
  property_ = atomOf(x, property);
}

PropertyWatch::~PropertyWatch() = default;

int PropertyWatch::changes() {
  while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(display_->connection.get())}) {
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
    if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY && change->atom == property_) {
      ++changes_;
    }
  }
  return changes_;
}

struct InputGrab::Display : test::Display {
  using test::Display::Display;
};

InputGrab::InputGrab(const QString& display) : display_(std::make_unique<Display>(display)) {
  if (display_->screen == nullptr) return;
  xcb_connection_t* x = display_->connection.get();
  const xcb_window_t root = display_->screen->root;
  const Reply<xcb_grab_pointer_reply_t> pointer(xcb_grab_pointer_reply(
      x,
      xcb_grab_pointer(x, 0, root, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE,
                       XCB_CURRENT_TIME),
      nullptr));
  const Reply<xcb_grab_keyboard_reply_t> keyboard(xcb_grab_keyboard_reply(
      x, xcb_grab_keyboard(x, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
      nullptr));
  held_ = pointer && keyboard && pointer->status == XCB_GRAB_STATUS_SUCCESS &&
          keyboard->status == XCB_GRAB_STATUS_SUCCESS;
}

InputGrab::~InputGrab() = default;

}  // namespace tarnwick::test
