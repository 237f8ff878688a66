#include "utility/x11/raw_presses.h"

#include <xcb/xinput.h>

#include <QCoreApplication>
#include <memory>
#include <optional>
#include <utility>

#include "common/x11/server.h"

namespace tarnwick::x11 {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;
constexpr std::uint32_t firstOfWheel = 4, lastOfWheel = 7;

struct Pointer {
  QPoint place;
  bool overOurs = false;  // a window made by this program
};

// Goes down the windows that the pointer is really over. A client's window mostly lies in a frame
// of the window manager's.
std::optional<Pointer> pointer() {
  constexpr int deepest = 16;
  xcb_connection_t* const connection = server();
  const auto* const setup = xcb_get_setup(connection);
  std::optional<Pointer> pointer;
  xcb_window_t window = rootOf(connection);
  for (int depth = 0; window != XCB_WINDOW_NONE && depth < deepest; ++depth) {
    const Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, window), nullptr));
    if (!reply) break;
    window = reply->child;
    const bool ours = (window & ~setup->resource_id_mask) == setup->resource_id_base;
    pointer = {{reply->root_x, reply->root_y}, ours};
    if (ours) break;
  }
  return pointer;
}

}  // namespace

RawPresses::RawPresses(std::function<bool(QPoint)> isOurItem) : isOurItem_(std::move(isOurItem)) {
  qApp->installNativeEventFilter(this);
}

RawPresses::~RawPresses() {
  if (qApp) qApp->removeNativeEventFilter(this);
}

Registration RawPresses::addGlobalPressMonitor(std::function<void()> callback) {
  return listen(global_, std::move(callback));
}

Registration RawPresses::addPressMonitor(std::function<void()> callback) {
  return listen(outside_, std::move(callback));
}

Registration RawPresses::listen(CallbackList& listeners, std::function<void()> callback) {
  if (!server()) return {};
  if (listening_++ == 0) select(true);
  auto listener = std::make_shared<Registration>(listeners.add(std::move(callback)));
  return Registration([this, alive = std::weak_ptr(alive_), listener] {
    listener->reset();
    if (!alive.expired() && --listening_ == 0) select(false);
  });
}

// On the master devices, apart from what Qt selects for all devices.
void RawPresses::select(bool on) {
  xcb_connection_t* const connection = server();
  if (!connection) return;
  struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } selection{};
  selection.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
  selection.head.mask_len = 1;
  selection.mask = on ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS : 0;
  xcb_input_xi_select_events(connection, rootOf(connection), 1, &selection.head);
  xcb_flush(connection);
}

bool RawPresses::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (listening_ == 0 || type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_GE_GENERIC) return false;
  const auto* generic = static_cast<const xcb_ge_generic_event_t*>(message);
  if (generic->event_type != XCB_INPUT_RAW_BUTTON_PRESS) return false;
  const auto* press = static_cast<const xcb_input_raw_button_press_event_t*>(message);
  if (press->detail >= firstOfWheel && press->detail <= lastOfWheel) return false;
  const auto now = pointer();
  if (!now || now->overOurs) return false;
  outside_.notify();
  const bool main = press->detail == leftButton || press->detail == rightButton;
  if (main && !global_.empty() && !isOurItem_(now->place)) global_.notify();
  return false;
}

}  // namespace tarnwick::x11
