#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "core/ports/event_monitors.h"
#include "core/ports/main_loop.h"
#include "core/ports/menus.h"

namespace tarnwick {

class TypeAheadMenu;

// Pop-up menus of the toolkit, one at a time, which work in a process without an active window:
// keyboard and pointer are grabbed while one is open. A menu that does not get them within a
// second, because another program holds them, is dismissed.
class QtMenus : public Menus {
 public:
  // Calls back once when what a represented object stands for has gone: its menu goes too.
  using GoneWatch = std::function<Registration(const AXElement&, std::function<void()>)>;

  QtMenus(MainLoop& loop, EventMonitors& monitors, GoneWatch goneWatch)
      : loop_(loop), monitors_(monitors), goneWatch_(std::move(goneWatch)) {}

  ~QtMenus() override;

  Registration popUp(const Menu& menu, Point location,
                     std::function<void(const MenuOutcome&)> callback) override;

 private:
  struct Tracking;

  static void fill(TypeAheadMenu& into, const Menu& menu,
                   const std::shared_ptr<Tracking>& tracking);
  static void takeDown(const std::weak_ptr<Tracking>& tracking);

  MainLoop& loop_;
  EventMonitors& monitors_;
  GoneWatch goneWatch_;
  std::weak_ptr<Tracking> open_;
};

}  // namespace tarnwick
