#pragma once

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace tarnwick::x11 {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
// What the server answered; null on an error, as when a window is gone.
template <class T>
using Reply = std::unique_ptr<T, Free>;

// A connection to the X server that $DISPLAY names; empty when it cannot be reached. To be held
// until another one is made: some servers start anew when their last client leaves.
std::shared_ptr<void> connectToServer();

// Qt's own connection to the X server; null without one.
inline xcb_connection_t* server() {
  const auto* qt =
      qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return qt ? qt->connection() : nullptr;
}

inline xcb_window_t rootOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

}  // namespace tarnwick::x11
