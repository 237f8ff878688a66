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

constexpr std::chrono::milliseconds checkInterval{50};
constexpr std::chrono::seconds longestAfterwards{2};

std::set<std::uint8_t> keysDown() {
  std::set<std::uint8_t> keys;
  xcb_connection_t* const connection = server();
  if (!connection) return keys;
  const Reply<xcb_query_keymap_reply_t> keymap(
      xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
  if (!keymap) return keys;
  for (unsigned key = 0; key < 8 * std::size(keymap->keys); ++key) {
    if (keymap->keys[key / 8] & (1U << (key % 8))) keys.insert(static_cast<std::uint8_t>(key));
  }
  return keys;
}

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
  timer_.setInterval(checkInterval);
  timer_.callOnTimeout([this] { check(); });
  held_ = keysDown();
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

void KeyboardGrab::end() {
  handler_ = nullptr;
  held_ = keysDown();
  deadline_.setRemainingTime(longestAfterwards);
  check();
}

void KeyboardGrab::check() {
  if (!held_.empty()) {
    const auto down = keysDown();
    std::erase_if(held_, [&](std::uint8_t key) { return !down.contains(key); });
  }
  if (!handler_ && (held_.empty() || deadline_.hasExpired())) {
    delete this;
  } else if (!grabbed_) {
    grab();
  }
}

bool KeyboardGrab::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_key_press_event_t*>(message);
  const std::uint8_t keyCode = event->detail;
  const auto kind = event->response_type & 0x7f;
  if (kind == XCB_KEY_RELEASE && held_.contains(keyCode)) check();
  if (kind != XCB_KEY_PRESS) return false;
  if (held_.contains(keyCode)) return true;
  if (!handler_) return false;
  if (modifierKeys_.contains(keyCode)) return true;

  std::optional<InputEvent> press;
  if (const auto key = virtualKey(keyCode)) {
    auto modifiers = masks_.modifiers(event->state);
    if (!modifiers) {
      modifiers = masks_.modifiers(event->state & (masks_.ofShortcuts() | XCB_MOD_MASK_LOCK));
      modifiers = *modifiers | KeyModifiers::unnamed;
    }
    press = InputEvent{EventKind::keyDown, *key, *modifiers, false};
  }
  const auto handler = handler_;  // which may end this
  const std::weak_ptr<int> alive = alive_;
  const bool swallowed = handler(press);
  // What the window gets, it gets with its repetitions.
  if (!swallowed && !alive.expired() && !handler_) {
    held_.erase(keyCode);
    check();
  }
  return swallowed;
}

Registration KeyboardGrab::begin(WId window, Handler handler) {
  auto* const grab = new KeyboardGrab(window, std::move(handler));
  return Registration([grab] { grab->end(); });
}

}  // namespace tarnwick::x11
