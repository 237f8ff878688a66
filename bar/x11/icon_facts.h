#pragma once

#include "common/x11/process_of_window.h"
#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// What a window that wants to be docked tells about itself.
struct IconFacts {
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_visualid_t visual = 0;
  std::uint8_t depth = 0;
  bool mapped = false;
  qint32 pid = 0;       // 0 when unknown
  QString instance;     // WM_CLASS
  QString windowClass;  // WM_CLASS
  QString title;
  std::optional<bool> wantsMapped;  // flag of _XEMBED_INFO; absent without that property
};

// The same being read: several windows' facts cost one round trip together. From its making on, the
// window's structure and property events come to this connection.
class IconProbe {
 public:
  explicit IconProbe(xcb_window_t window);

  // Absent when the window is gone or cannot be an icon.
  std::optional<IconFacts> take();

 private:
  static xcb_window_t selectEvents(xcb_window_t window);

  xcb_window_t window_;
  Pending<xcb_get_window_attributes_reply> attributes_;
  Pending<xcb_get_geometry_reply> geometry_;
  ProcessOfWindow process_;
  PropertyRead windowClass_;
  PropertyRead utf8Title_;
  PropertyRead title_;
  PropertyRead xembedInfo_;
};

inline constexpr std::uint32_t iconEvents =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

// _NET_WM_NAME, else WM_NAME.
QString titleOf(PropertyRead& utf8Title, PropertyRead& title);
std::optional<bool> wantsMapped(PropertyRead& xembedInfo);

}  // namespace tarnwick::bar::x11
