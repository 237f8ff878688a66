#pragma once

#include <cstdint>
#include <vector>

#include "common/identity/identity.h"
#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// WM_CLASS as instance and class, each at most 256 bytes long.
std::pair<QString, QString> windowClassOf(PropertyRead& property);

// One window's names for its application, being read.
class WindowHintsRead {
 public:
  explicit WindowHintsRead(xcb_window_t window);
  desktop::WindowHints take();

 private:
  PropertyRead gtkApplicationId_;
  PropertyRead kdeDesktopFile_;
  PropertyRead bamfDesktopFile_;
  PropertyRead windowClass_;
};

// What the managed windows of a process (_NET_CLIENT_LIST, _NET_WM_PID) say of their application;
// for desktop::IdentityResolver. Empty without an X server.
std::vector<desktop::WindowHints> windowHints(std::int32_t pid);

}  // namespace tarnwick::bar::x11
