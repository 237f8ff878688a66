#pragma once

#include <QMenu>
#include <QString>

namespace tarnwick {

// A menu in which typing the beginning of an entry's title goes to that entry; the same letter
// again goes to the next one that begins with it. For menus whose titles have no access keys.
class TypeAheadMenu : public QMenu {
 public:
  using QMenu::QMenu;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAction* match() const;
  void goTo(QAction* action);

  QString typed_;
  quint64 lastKey_ = 0;  // ms, when the last of it was typed
};

}  // namespace tarnwick
