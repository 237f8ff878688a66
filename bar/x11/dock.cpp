#include "bar/x11/dock.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <cmath>

#include "bar/x11/super_grabs.h"
#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

namespace {

constexpr std::chrono::milliseconds firstWait{500};
constexpr std::chrono::milliseconds longestWait{16'000};
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
constexpr std::uint32_t wmEvents =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;

// Distances count from the edges of the whole root window, not of the monitor.
void reserve(xcb_window_t window, const QRect& pixels) {
  std::array<std::uint32_t, 12> strut{};
  strut[2] = static_cast<std::uint32_t>(std::max(0, pixels.bottom() + 1));  // top
  strut[8] = static_cast<std::uint32_t>(std::max(0, pixels.left()));        // its first and ...
  strut[9] = static_cast<std::uint32_t>(std::max(0, pixels.right()));       // last column
  setNumbers(window, atoms().netWmStrutPartial, XCB_ATOM_CARDINAL, strut);
  setNumbers(window, atoms().netWmStrut, XCB_ATOM_CARDINAL, std::span(strut).first(4));
}

// With this protocol some window managers focus a dock when nothing else is left.
void refuseFocus(xcb_window_t window) {
  auto protocols = PropertyRead(window, atoms().wmProtocols).numbers();
  if (std::erase(protocols, atoms().wmTakeFocus) != 0)
    setNumbers(window, atoms().wmProtocols, XCB_ATOM_ATOM, protocols);
}

void setStates(xcb_window_t window, bool shown) {
  const std::array states{atoms().netWmStateSticky, atoms().netWmStateSkipTaskbar,
                          atoms().netWmStateSkipPager, atoms().netWmStateAbove};
  if (!shown) {
    setNumbers(window, atoms().netWmState, XCB_ATOM_ATOM, states);
    setNumbers(window, atoms().netWmDesktop, XCB_ATOM_CARDINAL, std::array{allDesktops});
    return;
  }
  constexpr std::uint32_t add = 1;
  constexpr std::uint32_t application = 1;
  for (std::size_t i = 0; i < states.size(); i += 2) {
    sendMessage(rootWindow(), window, atoms().netWmState,
                {add, states[i], states[i + 1], application, 0}, wmEvents);
  }
  sendMessage(rootWindow(), window, atoms().netWmDesktop, {allDesktops, application, 0, 0, 0},
              wmEvents);
}

// Some window managers lose what is asked of them while they start, as at a login, and the window
// would never be seen.
void askAgainUnlessMapped(QWidget* window, std::chrono::milliseconds wait) {
  if (wait > longestWait) return;
  QTimer::singleShot(wait, window, [window, wait] {
    if (!window->isVisible() || !connection()) return;
    const auto id = static_cast<xcb_window_t>(window->winId());
    const auto attributes =
        Pending<xcb_get_window_attributes_reply>(xcb_get_window_attributes(connection(), id))
            .take();
    if (!attributes || attributes->map_state != XCB_MAP_STATE_UNMAPPED) return;
    const double scale = window->devicePixelRatioF();
    const QPoint place = window->screen()->geometry().topLeft();
    const std::array<std::uint32_t, 4> values{
        static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()),
        static_cast<std::uint32_t>(std::lround(window->width() * scale)),
        static_cast<std::uint32_t>(std::lround(window->height() * scale))};
    quiet(xcb_configure_window_checked(connection(), id,
                                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                           XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                       values.data()));
    quiet(xcb_map_window_checked(connection(), id));
    xcb_flush(connection());
    askAgainUnlessMapped(window, 2 * wait);
  });
}

}  // namespace

void showDock(QWidget& window) {
  window.show();
  askAgainUnlessMapped(&window, firstWait);
}

void makeDock(QWidget& window, QRect framePoints) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (!connection() || !screen) return;
  // Qt gives a monitor's origin in pixels and its size in points.
  const QPoint origin = screen->geometry().topLeft();
  const double scale = window.devicePixelRatioF();
  const auto pixels = [scale](int points) { return static_cast<int>(std::lround(points * scale)); };
  const QRect device(origin.x() + pixels(framePoints.x()), origin.y() + pixels(framePoints.y()),
                     pixels(framePoints.width()), pixels(framePoints.height()));

  window.setFixedSize(framePoints.size());
  window.move(origin + framePoints.topLeft());
  const auto id = static_cast<xcb_window_t>(window.winId());
  QWindow& handle = *window.windowHandle();
  const auto flags = handle.flags() | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus;
  if (flags != handle.flags()) handle.setFlags(flags);

  setNumbers(id, atoms().netWmWindowType, XCB_ATOM_ATOM, std::array{atoms().netWmWindowTypeDock});
  refuseFocus(id);
  reserve(id, device);
  setStates(id, window.isVisible());
  xcb_flush(connection());

  auto* grabs = window.findChild<SuperGrabs*>(QString(), Qt::FindDirectChildrenOnly);
  if (!grabs) grabs = new SuperGrabs(window);
  grabs->renew();
}

}  // namespace tarnwick::bar::x11
