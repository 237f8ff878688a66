#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "common/identity/identity.h"

namespace tarnwick::x11 {

// The managed windows (_NET_CLIENT_LIST) by their processes (_NET_WM_PID). Asks the X server once
// after each change of the list. Needs a QGuiApplication; without a window manager there are none.
class ClientWindows : public QAbstractNativeEventFilter {
 public:
  // `changed` is called when the list changes.
  explicit ClientWindows(std::function<void()> changed);
  ~ClientWindows() override;

  // What the windows of a process say of their application.
  std::vector<desktop::WindowHints> hints(std::int32_t pid);
  // Those that have windows.
  std::set<std::int32_t> processes();

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void read();

  const std::function<void()> changed_;
  xcb_atom_t clientList_ = XCB_ATOM_NONE;
  bool current_ = false;
  std::map<std::int32_t, std::vector<desktop::WindowHints>> windows_;
};

}  // namespace tarnwick::x11
