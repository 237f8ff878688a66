#include "bar/x11/bring_to_user.h"

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

namespace {

constexpr std::uint32_t fromPager = 2;
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
constexpr std::uint32_t wmEvents =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;

}  // namespace

void bringToUser(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  const auto id = static_cast<xcb_window_t>(window.winId());
  PropertyRead current(rootWindow(), atoms().netCurrentDesktop, 4);
  PropertyRead own(id, atoms().netWmDesktop, 4);
  const auto here = current.numbers();
  const auto there = own.numbers();
  if (!here.empty() && !there.empty() && there[0] != here[0] && there[0] != allDesktops) {
    sendMessage(rootWindow(), id, atoms().netWmDesktop, {here[0], fromPager, 0, 0, 0}, wmEvents);
  }
  if (!window.testAttribute(Qt::WA_ShowWithoutActivating)) {
    window.activateWindow();
    sendMessage(rootWindow(), id, atoms().netActiveWindow, {fromPager, 0, 0, 0, 0}, wmEvents);
  }
  xcb_flush(connection());
}

}  // namespace tarnwick::bar::x11
