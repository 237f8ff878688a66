#pragma once

#include <QTimer>
#include <functional>

namespace tarnwick::bar {

// Waits until the user holds no pointer button.
class FreeHand {
 public:
  // `isButtonDown` tells whether one is held now; it is asked every 30 milliseconds of a wait.
  explicit FreeHand(std::function<bool()> isButtonDown);

  // Calls `free` once: at once when no button is held, else as soon as none is. Never, when one is
  // held for half a minute. Takes the place of a wait that has not ended.
  void whenFree(std::function<void()> free);
  // Ends the wait, if there is one, without a call.
  void forget();

 private:
  void look();

  const std::function<bool()> isButtonDown_;
  QTimer timer_;
  std::function<void()> free_;
  int looks_ = 0;
};

}  // namespace tarnwick::bar
