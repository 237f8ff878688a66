#include "utility/x11/keyboard_changes.h"

#include <QCoreApplication>
#include <chrono>

#include "common/x11/server.h"
#include "common/x11/xkb.h"

namespace tarnwick::x11 {

namespace {

// Programs that remap keys do it one by one.
constexpr std::chrono::milliseconds settleTime{50};

}  // namespace

KeyboardChanges::KeyboardChanges() {
  if (xcb_connection_t* const connection = server()) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension && extension->present) keyboardEvent_ = extension->first_event;
  }
  settling_.setSingleShot(true);
  settling_.setInterval(settleTime);
  settling_.callOnTimeout([this] { mapChanged_.notify(); });
  qApp->installNativeEventFilter(this);
}

KeyboardChanges::~KeyboardChanges() {
  if (qApp) qApp->removeNativeEventFilter(this);
}

Registration KeyboardChanges::onLayoutChosen(std::function<void(std::uint32_t)> callback) {
  return layoutChosen_.add([this, callback = std::move(callback)] { callback(*group_); });
}

bool KeyboardChanges::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  const std::uint8_t kind = event->response_type & 0x7f;
  bool mapped = kind == XCB_MAPPING_NOTIFY;
  if (keyboardEvent_ != 0 && kind == keyboardEvent_) {
    const std::uint8_t what = event->pad0;
    mapped = mapped || what == XCB_XKB_NEW_KEYBOARD_NOTIFY || what == XCB_XKB_MAP_NOTIFY;
    if (what == XCB_XKB_STATE_NOTIFY) {
      const auto* const state = static_cast<const xcb_xkb_state_notify_event_t*>(message);
      if (state->group != group_) {
        group_ = state->group;
        layoutChosen_.notify();
      }
    }
  }
  if (mapped) settling_.start();
  return false;
}

}  // namespace tarnwick::x11
