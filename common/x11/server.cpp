#include "common/x11/server.h"

namespace tarnwick::x11 {

std::shared_ptr<void> connectToServer() {
  const std::shared_ptr<xcb_connection_t> connection(xcb_connect(nullptr, nullptr), xcb_disconnect);
  return xcb_connection_has_error(connection.get()) == 0 ? connection : nullptr;
}

}  // namespace tarnwick::x11
