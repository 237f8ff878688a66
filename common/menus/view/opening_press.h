#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

class QMenu;
class QMouseEvent;

namespace tarnwick {

// Keeps the press that opened a menu from choosing in it: the release of a button chooses only when
// its press came to the menu as well, and the second half of a double click that began before the
// menu was there counts as neither.
class OpeningPress : public QObject {
 public:
  // The menu or a submenu of it; all share what was pressed.
  void watch(QMenu& menu);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isInside(const QMouseEvent& event) const;

  std::vector<QPointer<QMenu>> menus_;
  Qt::MouseButtons pressed_;  // whose press came to the menu
  bool anyPress_ = false;     // so far
};

}  // namespace tarnwick
