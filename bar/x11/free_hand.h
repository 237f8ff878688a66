#pragma once

#include <QTimer>
#include <functional>

namespace tarnwick::bar::x11 {

// Waits until the user holds no pointer button.
class FreeHand {
 public:
  FreeHand();

  // Calls `free` once: at once when no button is held, else as soon as none is. Never, when one is
  // held for half a minute. Takes the place of a wait that has not ended.
  void whenFree(std::function<void()> free);
  // Ends the wait, if there is one, without a call.
  void forget();

 private:
  void look();

  QTimer timer_;
  std::function<void()> free_;
  int looks_ = 0;
};

}  // namespace tarnwick::bar::x11
