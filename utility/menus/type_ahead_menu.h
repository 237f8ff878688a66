#pragma once

#include <QMenu>
#include <QString>

namespace tarnwick {

// A menu in which typing the beginning of an entry's title goes to that entry; the same letter
// again goes to the next one that begins with it. For menus whose titles have no access keys.
class TypeAheadMenu : public QMenu {
 public:
  using QMenu::QMenu;

  // Gives one of its actions its title, without which typing does not find it. A title that is
  // wider than a menu should be is cut in the middle, and the tool tip has the whole.
  void setTitle(QAction& action, const QString& title) const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAction* match() const;
  void goTo(QAction* action);

  QString typed_;
  quint64 lastKey_ = 0;  // ms, when the last of it was typed
};

}  // namespace tarnwick
