#include "utility/x11/keyboard_grab.h"

#include <QCoreApplication>
#include <chrono>
#include <iterator>
#include <utility>

#include "common/x11/server.h"
#include "utility/x11/key_codes.h"

namespace tarnwick::x11 {

namespace {

constexpr std::chrono::milliseconds retryInterval{50};
constexpr std::chrono::seconds longestWithoutKeys{10};

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

KeyboardGrab::KeyboardGrab(WId window, Handler handler, std::function<void()> idle)
    : window_(window),
      handler_(std::move(handler)),
      idle_(std::move(idle)),
      masks_(ModifierMasks::present()) {
  if (xcb_connection_t* const connection = server()) {
    const Reply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (mapping) {
      const auto* const keys = xcb_get_modifier_mapping_keycodes(mapping.get());
      modifierKeys_.insert(keys, keys + xcb_get_modifier_mapping_keycodes_length(mapping.get()));
    }
  }
  retry_.setInterval(retryInterval);
  retry_.callOnTimeout([this] { grab(); });
  bound_.setSingleShot(true);
  bound_.setInterval(longestWithoutKeys);
  bound_.callOnTimeout([this] { expire(); });
  qApp->installNativeEventFilter(this);
  grab();
  bound_.start();
}

KeyboardGrab::~KeyboardGrab() {
  if (qApp) qApp->removeNativeEventFilter(this);
  ungrab();
}

void KeyboardGrab::grab() {
  xcb_connection_t* const connection = server();
  if (!connection) return;
  const auto cookie = xcb_grab_keyboard(connection, 0, static_cast<xcb_window_t>(window_),
                                        XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const Reply<xcb_grab_keyboard_reply_t> reply(
      xcb_grab_keyboard_reply(connection, cookie, nullptr));
  held_ = keysDown();
  for (const auto key : modifierKeys_) held_.erase(key);
  if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS) {
    holder_ = this;
    retry_.stop();
  } else if (!retry_.isActive()) {
    retry_.start();
  }
}

void KeyboardGrab::ungrab() {
  retry_.stop();
  if (holder_ != this) return;
  holder_ = nullptr;
  if (xcb_connection_t* const connection = server()) {
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_flush(connection);
  }
}

// What ends recording from outside may be about to lock the screen.
void KeyboardGrab::end() {
  handler_ = nullptr;
  retry_.stop();
  if (!handling_) ungrab();
  finishIfIdle();
}

void KeyboardGrab::expire() {
  ungrab();
  if (handler_) {
    const auto idle = idle_;  // drops the registration, which may end this
    return idle();
  }
  forgetReleased();
}

// Releases come to whoever has the focus or the keyboard then.
void KeyboardGrab::forgetReleased() {
  const auto down = keysDown();
  std::erase_if(held_, [&](std::uint8_t key) { return !down.contains(key); });
  finishIfIdle();
}

void KeyboardGrab::finishIfIdle() {
  if (!handler_ && !handling_ && held_.empty()) delete this;
}

bool KeyboardGrab::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto kind = static_cast<const xcb_generic_event_t*>(message)->response_type & 0x7f;
  if (kind == XCB_FOCUS_IN) {
    forgetReleased();
    return false;
  }
  const auto* const event = static_cast<const xcb_key_press_event_t*>(message);
  if (kind == XCB_KEY_PRESS) return pressed(event->detail, event->state);
  if (kind == XCB_KEY_RELEASE) released(event->detail);
  return false;
}

void KeyboardGrab::released(std::uint8_t keyCode) {
  if (held_.erase(keyCode) > 0) finishIfIdle();
}

bool KeyboardGrab::pressed(std::uint8_t keyCode, std::uint16_t state) {
  if (held_.contains(keyCode)) return true;
  const bool isModifier = modifierKeys_.contains(keyCode);
  if (!handler_) {
    if (!isModifier) ungrab();  // the server repeats the new key now
    return false;
  }
  bound_.start();
  if (isModifier) return true;
  held_.insert(keyCode);

  std::optional<InputEvent> press;
  if (const auto key = virtualKey(keyCode)) {
    press = InputEvent{EventKind::keyDown, *key, masks_.modifiers(state), false};
  }
  const auto handler = handler_;  // which may drop the registration
  handling_ = true;
  const bool swallowed = handler(press);
  handling_ = false;
  finishIfIdle();
  return swallowed;
}

Registration KeyboardGrab::begin(WId window, Handler handler, std::function<void()> idle) {
  auto* const grab = new KeyboardGrab(window, std::move(handler), std::move(idle));
  return Registration([grab] { grab->end(); });
}

}  // namespace tarnwick::x11
