#pragma once

#include <xcb/res.h>

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// The process that owns a window, being asked for: the server's own knowledge where it has
// XRes 1.2, else what the window says (_NET_WM_PID), which inside a sandbox is another number
// and counts only for windows of this machine (WM_CLIENT_MACHINE).
class ProcessOfWindow {
 public:
  explicit ProcessOfWindow(xcb_window_t window);

  qint32 pid();  // 0 when unknown

 private:
  std::optional<Pending<xcb_res_query_client_ids_reply>> clientIds_;
  PropertyRead property_;
  PropertyRead machine_;
};

}  // namespace tarnwick::bar::x11
