#include "bar/x11/super_grabs.h"

#include <QCoreApplication>
#include <chrono>

#include "common/x11/keyboard_map.h"

namespace tarnwick::bar::x11 {

namespace {

// A change of layout comes as a burst of events.
constexpr std::chrono::milliseconds settleTime{50};
constexpr std::uint8_t newKeyboardNotify = 0;
constexpr std::uint8_t keyboardMapNotify = 1;

}  // namespace

SuperGrabs::SuperGrabs(QWidget& window) : QObject(&window), window_(window) {
  constexpr std::string_view extension = "XKEYBOARD";
  const auto reply = Pending<xcb_query_extension_reply>(
                         xcb_query_extension(connection(), extension.size(), extension.data()))
                         .take();
  if (reply && reply->present) keyboardEvent_ = reply->first_event;
  renewTimer_.setSingleShot(true);
  renewTimer_.setInterval(settleTime);
  connect(&renewTimer_, &QTimer::timeout, this, &SuperGrabs::renew);
  qApp->installNativeEventFilter(this);
}

void SuperGrabs::renew() {
  auto* server = connection();
  const auto window = static_cast<xcb_window_t>(window_.winId());
  const KeyboardMap keyboard;
  std::uint16_t super =
      keyboard.modifier(keysym::superLeft) | keyboard.modifier(keysym::superRight);
  if (super == 0) super = XCB_MOD_MASK_4;
  const std::uint16_t locks[] = {XCB_MOD_MASK_LOCK, keyboard.modifier(keysym::numLock),
                                 keyboard.modifier(keysym::scrollLock)};
  quiet(xcb_ungrab_button_checked(server, XCB_BUTTON_INDEX_1, window, XCB_MOD_MASK_ANY));
  for (unsigned subset = 0; subset < 8; ++subset) {
    std::uint16_t modifiers = super;
    for (unsigned i = 0; i < 3; ++i) {
      if (subset & (1U << i)) modifiers |= locks[i];
    }
    quiet(xcb_grab_button_checked(
        server, 0, window,
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_MOTION,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE,
        XCB_BUTTON_INDEX_1, modifiers));
  }
  xcb_flush(server);
}

bool SuperGrabs::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const std::uint8_t type = event->response_type & 0x7f;
  const bool mapping = type == XCB_MAPPING_NOTIFY ||
                       (keyboardEvent_ != 0 && type == keyboardEvent_ &&
                        (event->pad0 == newKeyboardNotify || event->pad0 == keyboardMapNotify));
  if (mapping) renewTimer_.start();
  return false;
}

}  // namespace tarnwick::bar::x11
