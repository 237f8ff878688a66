#include "bar/x11/sent_click.h"

#include <QApplication>
#include <QPointer>
#include <chrono>

#include "common/x11/keyboard_map.h"

namespace tarnwick::bar::x11 {

using namespace std::chrono_literals;

namespace {

constexpr auto enterToPress = 50ms;
constexpr auto pressToRelease = 30ms;
constexpr xcb_timestamp_t pressLength = 30;  // ms
constexpr auto lookInterval = 100ms;
constexpr int looksForMenu = 3;
constexpr auto slowLookInterval = 500ms;  // at a menu that stays open, or for one that is late
constexpr int looksForLateMenu = 8;
constexpr int maxLooks = 600;  // five minutes
constexpr int maxNesting = 8;
constexpr std::uint8_t sameScreen = 2;  // bit of crossing events

// Only the first five buttons have a state bit.
std::uint16_t heldMask(std::uint8_t button) {
  return button <= 5 ? static_cast<std::uint16_t>(XCB_BUTTON_MASK_1 << (button - 1)) : 0;
}

// A menu of another client holds the pointer, so that nobody else can grab it.
bool isPointerHeldElsewhere() {
  // A grab of our own would be replaced by the trial.
  if (QApplication::activePopupWidget() || QGuiApplication::mouseButtons() != Qt::NoButton)
    return false;
  auto* server = connection();
  Pending<xcb_grab_pointer_reply> grab(
      xcb_grab_pointer(server, 1, rootWindow(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                       XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME));
  xcb_ungrab_pointer(server, XCB_CURRENT_TIME);
  const auto reply = grab.take();
  return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

}  // namespace

SentClick::SentClick(xcb_window_t icon, TraySelection& selection)
    : icon_(icon), selection_(selection) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] {
    if (phase_ == Phase::entered) {
      press();
    } else if (phase_ == Phase::pressed) {
      release();
    } else {
      watchMenu();
    }
    xcb_flush(connection());
  });
}

SentClick::~SentClick() {
  if (!connection()) return;
  if (phase_ == Phase::pressed) release();
  if (phase_ == Phase::entered || phase_ == Phase::watchingMenu) sendCrossing(XCB_LEAVE_NOTIFY);
}

bool SentClick::makeReady() {
  if (phase_ == Phase::left) end();
  return phase_ == Phase::idle;
}

void SentClick::start(std::uint8_t button, std::uint16_t state) {
  if (!makeReady()) return;
  phase_ = Phase::starting;
  button_ = button;
  state_ = state;
  // GTK 2 opens no menu for an event without a real time.
  selection_.withServerTime([self = QPointer(this), start = ++starts_](xcb_timestamp_t time) {
    if (self && self->phase_ == Phase::starting && self->starts_ == start) self->enter(time);
  });
}

void SentClick::turnWheel(std::uint8_t button, int notches) {
  selection_.withServerTime([self = QPointer(this), button, notches](xcb_timestamp_t time) {
    if (!self || !self->makeReady()) return;
    self->button_ = button;
    self->time_ = time;
    self->findTarget();
    self->sendCrossing(XCB_ENTER_NOTIFY);
    for (int i = 0; i < notches; ++i) {
      self->sendButton(XCB_BUTTON_PRESS, 0, time);
      self->sendButton(XCB_BUTTON_RELEASE, heldMask(button), time);
    }
    self->sendCrossing(XCB_LEAVE_NOTIFY);
    xcb_flush(connection());
  });
}

void SentClick::cancel() {
  if (phase_ == Phase::starting || phase_ == Phase::entered) {
    leave();
    return end();
  }
  if (phase_ == Phase::pressed) release();
  if (phase_ == Phase::watchingMenu) sendEscape();
  if (phase_ == Phase::left) end();
  xcb_flush(connection());
}

void SentClick::enter(xcb_timestamp_t time) {
  phase_ = Phase::entered;
  time_ = time;
  findTarget();
  sendCrossing(XCB_ENTER_NOTIFY);
  xcb_flush(connection());
  timer_.start(enterToPress);
}

void SentClick::press() {
  phase_ = Phase::pressed;
  sendButton(XCB_BUTTON_PRESS, state_, time_);
  timer_.start(pressToRelease);
}

void SentClick::release() {
  phase_ = Phase::watchingMenu;
  menuSeen_ = false;
  looks_ = 0;
  sendButton(XCB_BUTTON_RELEASE, state_ | heldMask(button_), time_ + pressLength);
  timer_.start(lookInterval);
}

void SentClick::watchMenu() {
  const bool open = isPointerHeldElsewhere();
  menuSeen_ = menuSeen_ || open;
  ++looks_;
  // The pointer does not stay over an icon that opens nothing: it would show its tool tip.
  if (!menuSeen_ && looks_ == looksForMenu) leave();
  if (open ? looks_ < maxLooks : !menuSeen_ && looks_ < looksForLateMenu) {
    timer_.start(looks_ < looksForMenu ? lookInterval : slowLookInterval);
  } else {
    leave();
    end();
  }
}

void SentClick::leave() {
  const Phase before = std::exchange(phase_, Phase::left);
  if (before != Phase::starting && before != Phase::left) sendCrossing(XCB_LEAVE_NOTIFY);
}

void SentClick::end() {
  timer_.stop();
  phase_ = Phase::idle;
  xcb_flush(connection());
  emit finished();
}

// The innermost window under the icon's middle that listens to buttons: some toolkits put a child
// into the icon and look at nothing else.
void SentClick::findTarget() {
  auto* server = connection();
  target_ = icon_;
  const auto geometry = Pending<xcb_get_geometry_reply>(xcb_get_geometry(server, icon_)).take();
  inTarget_ = geometry ? QPoint(geometry->width / 2, geometry->height / 2) : QPoint();
  const auto translate = [server](xcb_window_t from, xcb_window_t to, QPoint point) {
    return Pending<xcb_translate_coordinates_reply>(
               xcb_translate_coordinates(server, from, to, static_cast<std::int16_t>(point.x()),
                                         static_cast<std::int16_t>(point.y())))
        .take();
  };
  const auto root = translate(icon_, rootWindow(), inTarget_);
  onRoot_ = root ? QPoint(root->dst_x, root->dst_y) : QPoint();

  xcb_window_t inner = icon_;
  QPoint inInner = inTarget_;
  for (int depth = 0; depth < maxNesting; ++depth) {
    const auto here = translate(inner, inner, inInner);
    if (!here || here->child == XCB_WINDOW_NONE) return;
    const auto within = translate(inner, here->child, inInner);
    const auto attributes =
        Pending<xcb_get_window_attributes_reply>(xcb_get_window_attributes(server, here->child))
            .take();
    if (!within || !attributes) return;
    inner = here->child;
    inInner = {within->dst_x, within->dst_y};
    if (attributes->all_event_masks & XCB_EVENT_MASK_BUTTON_PRESS) {
      target_ = inner;
      inTarget_ = inInner;
    }
  }
}

void SentClick::sendCrossing(std::uint8_t type) {
  xcb_enter_notify_event_t event{};
  event.response_type = type;
  event.detail = XCB_NOTIFY_DETAIL_ANCESTOR;
  event.time = type == XCB_ENTER_NOTIFY ? time_ : time_ + pressLength;
  event.root = rootWindow();
  event.event = target_;
  event.root_x = static_cast<std::int16_t>(onRoot_.x());
  event.root_y = static_cast<std::int16_t>(onRoot_.y());
  event.event_x = static_cast<std::int16_t>(inTarget_.x());
  event.event_y = static_cast<std::int16_t>(inTarget_.y());
  event.mode = XCB_NOTIFY_MODE_NORMAL;
  event.same_screen_focus = sameScreen;
  sendEvent(target_, XCB_EVENT_MASK_NO_EVENT, event);
}

void SentClick::sendButton(std::uint8_t type, std::uint16_t state, xcb_timestamp_t time) {
  xcb_button_press_event_t event{};
  event.response_type = type;
  event.detail = button_;
  event.time = time;
  event.root = rootWindow();
  event.event = target_;
  event.root_x = static_cast<std::int16_t>(onRoot_.x());
  event.root_y = static_cast<std::int16_t>(onRoot_.y());
  event.event_x = static_cast<std::int16_t>(inTarget_.x());
  event.event_y = static_cast<std::int16_t>(inTarget_.y());
  event.state = state;
  event.same_screen = 1;
  sendEvent(target_, XCB_EVENT_MASK_NO_EVENT, event);
}

void SentClick::sendEscape() {
  const auto key = KeyboardMap().keycode(keysym::escape);
  if (!key) return;
  for (const std::uint8_t type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
    xcb_key_press_event_t event{};
    event.response_type = type;
    event.detail = *key;
    event.time = time_ + pressLength;
    event.root = rootWindow();
    event.event = icon_;
    event.same_screen = 1;
    sendEvent(icon_, XCB_EVENT_MASK_NO_EVENT, event);
  }
}

}  // namespace tarnwick::bar::x11
