#pragma once

#include <functional>
#include <memory>

#include "platform/event_monitors.h"
#include "platform/main_loop.h"
#include "platform/menus.h"

namespace tarnwick {

// Pop-up menus of the toolkit, which work in a process without an active window: keyboard and
// pointer are grabbed while one is open. Where another client holds the grab, a press elsewhere
// closes the menu all the same.
class QtMenus : public Menus {
 public:
  QtMenus(MainLoop& loop, EventMonitors& monitors) : loop_(loop), monitors_(monitors) {}

  Registration popUp(const Menu& menu, Point location,
                     std::function<void(const MenuOutcome&)> callback) override;

 private:
  MainLoop& loop_;
  EventMonitors& monitors_;
};

}  // namespace tarnwick
