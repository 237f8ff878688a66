#include "adapters/x11/keyboard_grab.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "adapters/x11/key_codes.h"
#include "adapters/x11/server.h"

namespace tarnwick::x11 {

namespace {

constexpr std::chrono::milliseconds retryInterval{50};

}  // namespace

KeyboardGrab::KeyboardGrab(WId window, Handler handler)
    : window_(window), handler_(std::move(handler)), masks_(ModifierMasks::present()) {
  if (xcb_connection_t* const connection = server()) {
    const Reply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (mapping) {
      const auto* const keys = xcb_get_modifier_mapping_keycodes(mapping.get());
      modifierKeys_.insert(keys, keys + xcb_get_modifier_mapping_keycodes_length(mapping.get()));
    }
  }
  timer_.setInterval(retryInterval);
  timer_.callOnTimeout([this] {
    if (!handler_ && !isAnyKeyDown()) {
      delete this;
    } else if (!grabbed_) {
      grab();
    }
  });
  qApp->installNativeEventFilter(this);
  grab();
  timer_.start();
}

KeyboardGrab::~KeyboardGrab() {
  if (qApp) qApp->removeNativeEventFilter(this);
  xcb_connection_t* const connection = server();
  if (holder_ != this) return;
  holder_ = nullptr;
  if (!connection) return;
  xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
  xcb_flush(connection);
}

void KeyboardGrab::grab() {
  xcb_connection_t* const connection = server();
  if (!connection || !handler_) return;
  const auto cookie = xcb_grab_keyboard(connection, 0, static_cast<xcb_window_t>(window_),
                                        XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const Reply<xcb_grab_keyboard_reply_t> reply(
      xcb_grab_keyboard_reply(connection, cookie, nullptr));
  grabbed_ = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
  if (grabbed_) holder_ = this;
}

bool KeyboardGrab::isAnyKeyDown() const {
  xcb_connection_t* const connection = server();
  if (!connection) return false;
  const Reply<xcb_query_keymap_reply_t> keymap(
      xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
  return keymap && std::any_of(std::begin(keymap->keys), std::end(keymap->keys),
                               [](std::uint8_t keys) { return keys != 0; });
}

bool KeyboardGrab::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_key_press_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_KEY_PRESS) return false;
  if (modifierKeys_.contains(event->detail) || !handler_) return true;
  const auto key = virtualKey(event->detail);
  const auto modifiers = masks_.modifiers(event->state);
  const auto handler = handler_;  // which may end this
  if (!key || !modifiers) return handler(std::nullopt);
  return handler(InputEvent{EventKind::keyDown, *key, *modifiers, false});
}

Registration KeyboardGrab::begin(WId window, Handler handler) {
  auto* const grab = new KeyboardGrab(window, std::move(handler));
  return Registration([grab] {
    grab->handler_ = nullptr;
    if (!grab->isAnyKeyDown()) delete grab;
  });
}

}  // namespace tarnwick::x11
