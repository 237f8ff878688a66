#include "bar/x11/tray_selection.h"

#include <xcb/xfixes.h>

namespace tarnwick::bar::x11 {

namespace {

constexpr std::uint32_t requestDock = 0;
constexpr QRgb errorColour = 0xffcc0000;
constexpr QRgb warningColour = 0xfff57900;
constexpr QRgb successColour = 0xff4e9a06;

}  // namespace

void TraySelection::acquire(const TrayLook& look) {
  release();
  look_ = look;
  createWindow();
  withServerTime([this](xcb_timestamp_t time) { take(time); });
}

void TraySelection::createWindow() {
  auto* server = connection();
  window_ = xcb_generate_id(server);
  const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(server, XCB_COPY_FROM_PARENT, window_, rootWindow(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  writeLook();
  xcb_xfixes_select_selection_input(server, window_, atoms().netTray,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void TraySelection::release() {
  waitingForTime_.clear();
  owner_ = false;
  const auto window = std::exchange(window_, XCB_WINDOW_NONE);
  auto* server = connection();
  if (window == XCB_WINDOW_NONE || !server) return;
  xcb_destroy_window(server, window);
  xcb_flush(server);
}

void TraySelection::setLook(const TrayLook& look) {
  if (look == look_) return;
  look_ = look;
  if (window_ == XCB_WINDOW_NONE) return;
  writeLook();
  xcb_flush(connection());
}

void TraySelection::writeLook() {
  setNumbers(window_, atoms().netTrayOrientation, XCB_ATOM_CARDINAL, std::array{0U});  // horizontal
  setNumbers(window_, atoms().netTrayVisual, XCB_ATOM_VISUALID, std::array{look_.visual});
  setNumbers(window_, atoms().netTrayPadding, XCB_ATOM_CARDINAL, std::array{0U});
  setNumbers(window_, atoms().netTrayIconSize, XCB_ATOM_CARDINAL, std::array{look_.iconSide});
  std::vector<std::uint32_t> colours;
  for (const QRgb colour : {look_.foreground.rgb(), errorColour, warningColour, successColour}) {
    for (const int part : {qRed(colour), qGreen(colour), qBlue(colour)})
      colours.push_back(static_cast<std::uint32_t>(part) * 257);
  }
  setNumbers(window_, atoms().netTrayColors, XCB_ATOM_CARDINAL, colours);
}

void TraySelection::withServerTime(std::function<void(xcb_timestamp_t)> callback) {
  if (window_ == XCB_WINDOW_NONE) return;
  waitingForTime_.push_back(std::move(callback));
  // Adding nothing to a property changes nothing but brings an event with the time.
  xcb_change_property(connection(), XCB_PROP_MODE_APPEND, window_, atoms().netTrayPadding,
                      XCB_ATOM_CARDINAL, 32, 0, nullptr);
  xcb_flush(connection());
}

void TraySelection::take(xcb_timestamp_t time) {
  auto* server = connection();
  const auto ownerNow = [server] {
    const auto reply =
        Pending<xcb_get_selection_owner_reply>(xcb_get_selection_owner(server, atoms().netTray))
            .take();
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
  };
  if (owner_ || ownerNow() != XCB_WINDOW_NONE) return;
  xcb_set_selection_owner(server, window_, atoms().netTray, time);
  owner_ = ownerNow() == window_;
  if (!owner_) return;
  sendMessage(rootWindow(), rootWindow(), atoms().manager, {time, atoms().netTray, window_, 0, 0},
              XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  xcb_flush(server);
}

void TraySelection::giveUp() {
  if (!owner_) return;
  emit lost();
  // The old manager's window has to go for its clients to look for the new one.
  release();
  acquire(look_);
}

bool TraySelection::handle(const xcb_generic_event_t* event) {
  if (window_ == XCB_WINDOW_NONE) return false;
  const void* raw = event;
  const std::uint8_t type = event->response_type & 0x7f;
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto* change = static_cast<const xcb_property_notify_event_t*>(raw);
    if (change->window != window_) return false;
    for (const auto& callback : std::exchange(waitingForTime_, {})) callback(change->time);
    return true;
  }
  if (type == XCB_SELECTION_CLEAR) {
    const auto* clear = static_cast<const xcb_selection_clear_event_t*>(raw);
    if (clear->owner != window_) return false;
    giveUp();
    return true;
  }
  if (type == XCB_CLIENT_MESSAGE) {
    const auto* message = static_cast<const xcb_client_message_event_t*>(raw);
    if (message->window != window_ || message->type != atoms().netTrayOpcode) return false;
    // Balloons (opcodes 1 and 2) are dropped: the desktop has a notification service.
    if (owner_ && message->format == 32 && message->data.data32[1] == requestDock)
      emit dockRequested(message->data.data32[2]);
    return true;
  }
  if (type == extensions().selectionNotify) {
    const auto* change = static_cast<const xcb_xfixes_selection_notify_event_t*>(raw);
    if (change->window != window_) return false;
    if (change->owner == XCB_WINDOW_NONE && !owner_) take(change->timestamp);
    return true;
  }
  return false;
}

}  // namespace tarnwick::bar::x11
