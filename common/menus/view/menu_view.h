#pragma once

#include <QAction>
#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <vector>

#include "common/menus/client/menu_types.h"

namespace tarnwick {

// One level of another application's menu on screen, kept in step with its entries. A long level
// shows its first entries and has the others in groups below a further submenu, so that no layout
// takes long.
class MenuView : public QMenu {
  Q_OBJECT

 public:
  static constexpr std::size_t groupSize = 100;
  static constexpr std::size_t toTheEnd = static_cast<std::size_t>(-1);

  // The visible entries below menu entry `id`, from the `from`th to before the `to`th.
  MenuView(int id, QWidget* parent, std::size_t from = 0, std::size_t to = toTheEnd);

  int id() const { return id_; }
  // Whether this is a group of a long level rather than a submenu of the application's.
  bool isContinuation() const { return from_ > 0; }

  // Shows these entries; the actions of surviving ids stay. An empty list is passed over when
  // something is shown already: owners empty their menu to fill it again.
  void setEntries(const std::vector<MenuEntry>& children);
  // Says in place of entries that they have not come yet.
  void showWaiting();

 signals:
  // An entry was chosen here.
  void chosen(int id);
  // A view for a submenu or a group was made; it has no entries yet.
  void viewAdded(tarnwick::MenuView* view);
  // A submenu of this has come under a new id.
  void renumbered(int from, int to);

 private:
  class EntryAction;

  void apply(const std::vector<MenuEntry>& children, const std::vector<std::size_t>& shown);
  void apply(EntryAction& action, const MenuEntry& entry);
  void setGroups(const std::vector<MenuEntry>& children, const std::vector<std::size_t>& shown,
                 std::size_t from, std::size_t size);
  void loadIcons();
  void layOutOnce();

  void setId(int id);

  int id_;
  const std::size_t from_;
  const std::size_t to_;
  std::vector<EntryAction*> entries_;  // in order; children of this
  std::vector<QAction*> groups_;       // after them; each opens a part of the others
  QAction* waiting_ = nullptr;
  std::vector<QPointer<EntryAction>> iconless_;
  QTimer iconTimer_;
};

}  // namespace tarnwick
