#include "utility/x11/key_grabs.h"

#include <xcb/xinput.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <utility>

#include "common/x11/server.h"
#include "common/x11/xkb.h"
#include "utility/x11/key_codes.h"

namespace tarnwick::x11 {

namespace {

// Releases get lost when a menu closes, the grab is broken or the keyboard is unplugged. Whoever
// keeps a key down long is looked at more and more seldom.
constexpr std::chrono::milliseconds firstHeldCheck{100};
constexpr std::chrono::milliseconds heldCheckInterval{1000};

// Programs that follow the same change of the map let go of what they had in a moment.
constexpr std::chrono::milliseconds firstRetry{250};
constexpr std::chrono::seconds lastRetry{8};  // each takes twice as long as the one before

std::vector<xcb_window_t> roots(xcb_connection_t* connection) {
  std::vector<xcb_window_t> windows;
  for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection)); screen.rem > 0;
       xcb_screen_next(&screen)) {
    windows.push_back(screen.data->root);
  }
  return windows;
}

void ungrab(xcb_connection_t* connection, std::uint8_t keyCode,
            const std::vector<std::uint16_t>& variants) {
  for (const auto root : roots(connection)) {
    for (const auto variant : variants) xcb_ungrab_key(connection, keyCode, root, variant);
  }
}

// Asks for a grab of XInput 2 and gives it back. Such a grab of another program would win over ours
// without an error. True when somebody has one.
class ForeignGrabProbe {
 public:
  ForeignGrabProbe(xcb_connection_t* connection, std::uint8_t keyCode,
                   const std::vector<std::uint16_t>& variants)
      : connection_(connection) {
    const std::vector<std::uint32_t> modifiers(variants.begin(), variants.end());
    const auto count = static_cast<std::uint16_t>(modifiers.size());
    const std::uint32_t mask =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    for (const auto root : roots(connection)) {
      cookies_.push_back(xcb_input_xi_passive_grab_device(
          connection, XCB_CURRENT_TIME, root, XCB_CURSOR_NONE, keyCode, XCB_INPUT_DEVICE_ALL_MASTER,
          count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
          XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &mask, modifiers.data()));
      xcb_input_xi_passive_ungrab_device(connection, root, keyCode, XCB_INPUT_DEVICE_ALL_MASTER,
                                         count, XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
    }
  }

  bool found() {
    bool found = false;
    for (const auto cookie : std::exchange(cookies_, {})) {
      const Reply<xcb_input_xi_passive_grab_device_reply_t> reply(
          xcb_input_xi_passive_grab_device_reply(connection_, cookie, nullptr));
      found = found || (reply && reply->num_modifiers > 0);
    }
    return found;
  }

 private:
  xcb_connection_t* connection_;
  std::vector<xcb_input_xi_passive_grab_device_cookie_t> cookies_;
};

}  // namespace

KeyGrabs::KeyGrabs(KeyboardChanges& changes)
    : masks_(ModifierMasks::present()), mapChanges_(changes.onMapChanged([this] { followMap(); })) {
  if (xcb_connection_t* const connection = server()) {
    // Repetitions of a held key come as presses without releases in between.
    const auto* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension && extension->present) {
      constexpr auto flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
      xcb_discard_reply(connection, xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD,
                                                             flag, flag, 0, 0, 0)
                                        .sequence);
    }
  }
  heldCheck_.setSingleShot(true);
  heldCheck_.callOnTimeout([this] { checkHeldKeys(); });
  retry_.setSingleShot(true);
  retry_.callOnTimeout([this] {
    retry_.setInterval(2 * retry_.intervalAsDuration());
    grabMissing();
  });
  qApp->installNativeEventFilter(this);
}

KeyGrabs::~KeyGrabs() {
  if (qApp) qApp->removeNativeEventFilter(this);
}

Registration KeyGrabs::registerEventHotKey(std::uint32_t keyCode, KeyModifiers modifiers,
                                           HotKeyId id) {
  const auto place = xKeyCode(keyCode);
  if (!place || contains(modifiers, KeyModifiers::function)) return {};
  HotKey hotKey{id, *place, modifiers, {}, false};
  const bool known = std::any_of(hotKeys_.begin(), hotKeys_.end(), [&](const auto& entry) {
    return entry.second.keyCode == hotKey.keyCode && entry.second.modifiers == hotKey.modifiers;
  });
  if (known || (!grab(hotKey) && hotKey.bits)) return {};
  // Repetitions of a key that is down already would come through the grab as presses.
  if (hotKey.grabbed && !held_.contains(hotKey.keyCode) && isDown(hotKey.keyCode)) {
    hold(hotKey.keyCode, {false, false, modifiers});
  }
  const auto number = ++lastHotKey_;
  hotKeys_.emplace(number, hotKey);
  return Registration([this, alive = std::weak_ptr(alive_), number] {
    if (alive.expired()) return;
    const auto dropped = hotKeys_.extract(number);
    if (dropped.mapped().grabbed) release(dropped.mapped());
  });
}

bool KeyGrabs::isInForce(HotKeyId id) const {
  return std::any_of(hotKeys_.begin(), hotKeys_.end(), [&](const auto& entry) {
    return entry.second.id == id && entry.second.grabbed;
  });
}

bool KeyGrabs::isTakenElsewhere(std::uint32_t keyCode, KeyModifiers modifiers) {
  const auto place = xKeyCode(keyCode);
  if (!place || !server() || !masks_.bits(modifiers)) return false;
  HotKey trial{{}, *place, modifiers, {}, false};
  for (const auto& [number, hotKey] : hotKeys_) {
    const bool same = hotKey.keyCode == *place && hotKey.modifiers == modifiers;
    if (same && hotKey.grabbed) return false;
  }
  const bool free = grab(trial);
  if (free) release(trial);
  return !free;
}

// All requests go out together: one round trip, however many variants there are.
bool KeyGrabs::grab(HotKey& hotKey) {
  xcb_connection_t* const connection = server();
  hotKey.bits = masks_.bits(hotKey.modifiers);
  if (!connection || !hotKey.bits) return false;
  const auto variants = masks_.withLocks(*hotKey.bits);
  ForeignGrabProbe probe(connection, hotKey.keyCode, variants);
  std::vector<xcb_void_cookie_t> cookies;
  for (const auto root : roots(connection)) {
    for (const auto variant : variants) {
      cookies.push_back(xcb_grab_key_checked(connection, 0, root, variant, hotKey.keyCode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
  }
  bool free = !probe.found();
  for (const auto cookie : cookies) {
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    free = free && !error;
  }
  hotKey.grabbed = free;
  if (!free) release(hotKey);
  return free;
}

void KeyGrabs::release(const HotKey& hotKey) {
  xcb_connection_t* const connection = server();
  if (!connection || !hotKey.bits) return;
  ungrab(connection, hotKey.keyCode, masks_.withLocks(*hotKey.bits));
  xcb_flush(connection);
}

// Passive grabs outlive keyboards and layouts. They have to be made anew when a modifier has moved
// to another bit.
void KeyGrabs::followMap() {
  const auto present = ModifierMasks::present();
  if (present != masks_) {
    for (auto& [number, hotKey] : hotKeys_) {
      if (std::exchange(hotKey.grabbed, false)) release(hotKey);
    }
    masks_ = present;
  }
  retry_.setInterval(firstRetry);
  grabMissing();
}

void KeyGrabs::grabMissing() {
  bool missing = false;
  for (auto& [number, hotKey] : hotKeys_) {
    if (hotKey.grabbed || grab(hotKey)) continue;
    missing = missing || hotKey.bits;
  }
  if (missing && retry_.intervalAsDuration() <= lastRetry) retry_.start();
}

Registration KeyGrabs::watchHotKeys(std::function<void(const HotKeyEvent&)> callback) {
  watcher_ = std::make_shared<std::function<void(const HotKeyEvent&)>>(std::move(callback));
  return Registration([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) watcher_.reset();
  });
}

Registration KeyGrabs::watchMenuKeys(std::function<bool(const InputEvent&)> callback) {
  menuWatcher_ = std::make_shared<std::function<bool(const InputEvent&)>>(std::move(callback));
  return Registration([this, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    menuWatcher_.reset();
    // The release of what was swallowed is still to be told; it may go elsewhere, so that the
    // check has to notice it. What the menu has seen itself is no business of ours.
    for (auto& [keyCode, held] : held_) {
      if (held.forMenu) held = {true, false, held.modifiers};
    }
    std::erase_if(held_, [](const auto& entry) { return !entry.second.forHotKey; });
  });
}

bool KeyGrabs::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (hotKeys_.empty() && held_.empty() && !menuWatcher_) return false;
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_key_press_event_t*>(message);
  const std::uint8_t kind = event->response_type & 0x7f;
  if (kind != XCB_KEY_PRESS && kind != XCB_KEY_RELEASE) return false;
  if (menuWatcher_) return menuKey(event->detail, event->state, kind == XCB_KEY_PRESS);
  if (kind == XCB_KEY_PRESS) return hotKeyPressed(event->detail, event->state);
  keyReleased(event->detail);
  return false;
}

// True for presses of a hot key, which are for nobody else. They come through its grab, or past it
// to a window of ours that still had the keyboard from recording.
bool KeyGrabs::hotKeyPressed(std::uint8_t keyCode, std::uint16_t state) {
  const auto bits = static_cast<std::uint16_t>(state & masks_.ofShortcuts());
  if (contains(masks_.modifiers(state), KeyModifiers::unnamed)) return false;
  for (const auto& [number, hotKey] : hotKeys_) {
    if (!hotKey.grabbed || hotKey.keyCode != keyCode || hotKey.bits != bits) continue;
    if (held_.contains(keyCode)) return true;  // a repetition
    hold(keyCode, {true, false, hotKey.modifiers});
    tell(hotKey, true);
    return true;
  }
  return false;
}

bool KeyGrabs::menuKey(std::uint8_t keyCode, std::uint16_t state, bool pressed) {
  const auto key = virtualKey(keyCode);
  const auto known = held_.find(keyCode);
  const bool held = known != held_.end();
  auto modifiers = masks_.modifiers(state);
  if (!pressed) {
    if (!held) return false;
    const HeldKey press = held_.extract(known).mapped();
    if (!press.forHotKey && !press.forMenu) return false;
    modifiers = press.modifiers;  // one of them may have been released first
  }
  if (!key) return false;
  const auto watcher = menuWatcher_;
  const bool swallowed = (*watcher)(
      {pressed ? EventKind::keyDown : EventKind::keyUp, *key, modifiers, pressed && held});
  if (pressed && !held) {
    const bool closed = menuWatcher_ != watcher;  // by what it has just done
    if (!closed || swallowed) hold(keyCode, {closed, !closed && swallowed, modifiers});
  }
  return swallowed;
}

void KeyGrabs::hold(std::uint8_t keyCode, const HeldKey& key) {
  held_[keyCode] = key;
  heldCheck_.start(firstHeldCheck);
}

bool KeyGrabs::isDown(std::uint8_t keyCode) {
  xcb_connection_t* const connection = server();
  if (!connection) return false;
  const Reply<xcb_query_keymap_reply_t> keymap(
      xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
  return keymap && (keymap->keys[keyCode / 8] & (1U << (keyCode % 8))) != 0;
}

void KeyGrabs::keyReleased(std::uint8_t keyCode) {
  const auto held = held_.extract(keyCode);
  if (held.empty() || !held.mapped().forHotKey) return;
  // By its modifiers: the keyboard may have lost or moved them meanwhile.
  for (const auto& [number, hotKey] : hotKeys_) {
    if (hotKey.keyCode != keyCode || hotKey.modifiers != held.mapped().modifiers) continue;
    return tell(hotKey, false);
  }
}

void KeyGrabs::tell(const HotKey& hotKey, bool pressed) {
  const auto watcher = watcher_;
  const HotKeyEvent event{hotKey.id, pressed};
  if (watcher) (*watcher)(event);
}

void KeyGrabs::checkHeldKeys() {
  for (const auto& [keyCode, held] : std::map(held_)) {
    if (!isDown(keyCode)) {
      if (menuWatcher_) {
        menuKey(keyCode, 0, false);
      } else {
        keyReleased(keyCode);
      }
    }
  }
  if (!held_.empty()) {
    heldCheck_.start(std::min(2 * heldCheck_.intervalAsDuration(), heldCheckInterval));
  }
}

}  // namespace tarnwick::x11
