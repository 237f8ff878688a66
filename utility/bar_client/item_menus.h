#pragma once

#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QObject>
#include <QPointF>
#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "common/barprotocol/bar_items.h"
#include "common/base/callback_list.h"
#include "common/base/registration.h"
#include "common/menus/client/menu_client.h"

namespace tarnwick {

// The menus that pressed status items have open, read from their owners over the bus. A menu is
// absent until its owner has answered for it and for the submenus that are read.
class ItemMenus : public QObject {
  Q_OBJECT

 public:
  // Submenus below the item's own menu that are asked for when they come empty.
  static constexpr int deepestSubmenu = 2;

  ItemMenus();
  ~ItemMenus() override;

  // Has the owner open the item's menu. Whatever was open is closed first. Half a second
  // later the menu is read as far as the owner has told of it by then. A menu that turns out not to
  // be there, or is still empty after that time, is closed and menuless() emitted with `place`. A
  // menu that nobody watches is closed after some seconds.
  void open(const BarItem& item, std::optional<QPointF> place);
  // Closes whatever is open.
  void closeAll();
  // Performs the entry that has this id in the menu as it was when watch() was called. Changes that
  // the owner has announced are read first. Only closes the menu when there is no such entry any
  // more or the owner does not answer in half a second.
  void choose(std::uint64_t item, int entry);
  void cancel(std::uint64_t item);
  // Calls `ended` once, when the item's open menu ends in any way. Empty when it has none.
  Registration watch(std::uint64_t item, std::function<void()> ended);
  bool isOpen(std::uint64_t item) const { return menus_.contains(item); }
  // Closes the menus of items that are not among these.
  void keepOnly(const std::vector<BarItem>& items);

  // The menu entry with that id, 0 for the menu itself, when the owner has answered; else nullptr.
  const MenuEntry* entry(std::uint64_t item, int id) const;

  bool eventFilter(QObject* watched, QEvent* event) override;

 signals:
  // The bar has other items now, and a menu is open.
  void itemsChanged();
  // The item that was opened has no menu to show: it means its own answer to a click, with `place`
  // (points) for what it may show.
  void menuless(std::uint64_t item, std::optional<QPointF> place);

 private:
  struct OpenMenu {
    BarItem item;
    std::optional<QPointF> place;
    std::unique_ptr<MenuClient> client;
    CallbackList ended;
    std::vector<int> asked;   // menus whose owner was told that they are open, outer ones first
    int pending = 0;          // answers for submenus waited for
    QDeadlineTimer patience;  // for the owner's answers, from the press on
    std::optional<MenuEntry> shown;  // the menu as it was when the copy was shown
  };

  // The open menu of that item, if it still is the one read by that client.
  OpenMenu* find(std::uint64_t item, const MenuClient* client);
  void onLayout(std::uint64_t item, const MenuClient* client);
  void fillSubmenus(std::uint64_t item, const MenuEntry& parent, int depth);
  void closeIfEmpty(std::uint64_t item, const MenuClient* client);
  void closeMenuless(std::uint64_t item);
  // Takes the menu out of the open ones.
  std::optional<OpenMenu> end(std::uint64_t item);
  void onOwnerGone(const QString& owner);
  void listen(bool on);
  void retire(std::unique_ptr<MenuClient> client);

  std::map<std::uint64_t, OpenMenu> menus_;
  QDBusServiceWatcher owners_;
  quint32 time_ = 0;  // X server's time of the user's latest event while a menu is open
};

}  // namespace tarnwick
