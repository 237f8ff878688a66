#include "tests/desktop/harness/x_screen.h"

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

}  // namespace

bool windowManagerRuns(const QString& name) {
  const Display display(name);
  if (display.screen == nullptr) {
    return false;
  }
  xcb_connection_t* x = display.connection.get();
  constexpr char atomName[] = "_NET_SUPPORTING_WM_CHECK";
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
      x, xcb_intern_atom(x, 1, static_cast<uint16_t>(strlen(atomName)), atomName), nullptr));
  if (!atom || atom->atom == XCB_ATOM_NONE) {
    return false;
  }
  const Reply<xcb_get_property_reply_t> property(xcb_get_property_reply(
      x, xcb_get_property(x, 0, display.screen->root, atom->atom, XCB_ATOM_WINDOW, 0, 1), nullptr));
  return property && xcb_get_property_value_length(property.get()) == 4;
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

}  // namespace tarnwick::test
