#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>

class QMenu;

namespace tarnwick {

// Pointer and keyboard for a menu that is on the screen, in a program without an active window.
// While another program holds them the menu gets no keys and does not close with a press elsewhere:
// it waits a second for its turn. The grab goes with the menu's window.
class PopupGrab : public QObject {
 public:
  explicit PopupGrab(QObject* parent = nullptr);

  // `giveUp` is called once when the menu, still shown, did not get its turn.
  void hold(QMenu* menu, std::function<void()> giveUp);

 private:
  void tryOnce();

  QPointer<QMenu> menu_;
  std::function<void()> giveUp_;
  QTimer retry_;
  int attempts_ = 0;
};

}  // namespace tarnwick
