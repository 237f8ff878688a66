#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <vector>

#include "common/menus/client/menu_client.h"
#include "common/menus/view/opening_press.h"
#include "common/menus/view/popup_grab.h"

class QAction;

namespace tarnwick {

class MenuView;

// Another application's menu, fetched and shown once. Nothing is shown, and no grab is held, before
// the owner has sent a layout; an owner that takes longer than 2 s has missed its chance. Deletes
// itself when it is over; deleting it earlier closes the menu.
class MenuPopup : public QObject {
  Q_OBJECT

 public:
  MenuPopup(const QString& busName, const QString& path, QObject* parent = nullptr);
  ~MenuPopup() override;

  // Fetches the menu and shows it below `anchor` (global points), kept on the primary monitor.
  // A press on the anchor while the menu is open only closes it.
  void open(const QRect& anchor);
  // Closes the menu, or gives it up.
  void dismiss();
  bool isShown() const;

 signals:
  // The owner or its menu is not there; nothing was shown.
  void failed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void show();
  void adopt(MenuView* view);
  void refill(MenuView* view);
  void onHovered(MenuView* view, QAction* action);
  void onAboutToShow(MenuView* view);
  void onAboutToHide(MenuView* view);
  void openSubmenu(int id);
  void closeUnshown();
  void choose(int id);
  void finish();

  MenuClient client_;
  QPointer<MenuView> view_;
  std::vector<QPointer<MenuView>> views_;  // of submenus, and parts of long levels
  std::vector<int> opened_;                // what the owner was told is open, root first
  QRect anchor_;
  QTimer deadline_;
  QTimer updates_;
  PopupGrab grab_;
  OpeningPress openingPress_;
  quint32 time_ = 0;  // X server's time of the latest event in the menu
  bool over_ = false;
};

}  // namespace tarnwick
