#pragma once

#include "core/menubar/menu_bar_scanner.h"
#include "core/ports/main_loop.h"
#include "core/ports/pointer_events.h"

namespace tarnwick {

// Moves another application's status item along the bar by a synthesised Command-drag.
class ItemMover {
 public:
  ItemMover(MainLoop& loop, PointerEvents& pointer, const MenuBarScanner& scanner)
      : loop_(loop), pointer_(pointer), scanner_(scanner) {}

  // Drags the item from the centre of its frame to `x` and blocks the thread for the whole drag,
  // about a quarter of a second. True when the item is seen to have moved, in whatever direction,
  // or stood there already.
  bool move(const MenuBarItemInfo& item, double toX) const;

 private:
  void post(PointerEventType type, Point location) const;

  MainLoop& loop_;
  PointerEvents& pointer_;
  const MenuBarScanner& scanner_;
};

}  // namespace tarnwick
