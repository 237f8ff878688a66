#pragma once

#include <QObject>
#include <cstdint>
#include <map>
#include <memory>
#include <set>

#include "adapters/bar/bar_items.h"
#include "dbusmenu/menu_client.h"

namespace tarnwick {

// The menus that pressed status items have open, read from their owners over the bus. A menu is
// absent until its owner has answered for it and for the submenus that are read.
class ItemMenus : public QObject {
  Q_OBJECT

 public:
  // Submenus below the item's own menu that are asked for when they come empty.
  static constexpr int deepestSubmenu = 2;

  // Has the owner open the item's menu. One that was open is closed first.
  void open(const BarItem& item);
  // Performs an entry; its menu is closed then.
  void choose(std::uint64_t item, int entry);
  void cancel(std::uint64_t item);
  bool isOpen(std::uint64_t item) const { return menus_.contains(item); }

  // The menu entry with that id, 0 for the menu itself, when the owner has answered; else nullptr.
  const MenuEntry* entry(std::uint64_t item, int id) const;

 private:
  struct OpenMenu {
    std::unique_ptr<MenuClient> client;
    std::set<int> asked;  // submenus whose owner was told that they are open
    int pending = 0;      // answers waited for
    bool answered = false;
  };

  void fillSubmenus(std::uint64_t item, const MenuEntry& parent, int depth);
  void retire(std::unique_ptr<MenuClient> client);

  std::map<std::uint64_t, OpenMenu> menus_;
};

}  // namespace tarnwick
