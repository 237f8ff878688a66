#pragma once

#include <QAbstractNativeEventFilter>
#include <QDeadlineTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "adapters/x11/modifier_masks.h"
#include "platform/key_event.h"
#include "platform/registration.h"

namespace tarnwick::x11 {

// Has the whole keyboard for a window that has the focus, also what others have grabbed passively.
// Presses of modifier keys are nobody's. When another program has the keyboard just now, it is
// taken as soon as that one lets go.
class KeyboardGrab : public QAbstractNativeEventFilter {
 public:
  // True swallows the press. Absent for a key or modifier that the core has no name for.
  using Handler = std::function<bool(const std::optional<InputEvent>&)>;

  KeyboardGrab(WId window, Handler handler);
  // Gives the keyboard back.
  ~KeyboardGrab() override;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  // One that lasts as long as the registration, and then until the keys that are down are up, or
  // for two seconds: a combination just recorded is not pressed by its own repetitions. What is
  // down at either moment is heard of again only when it has been released.
  static Registration begin(WId window, Handler handler);

 private:
  void grab();
  void end();
  void check();

  static inline const KeyboardGrab* holder_ = nullptr;  // whose the server's grab is
  const WId window_;
  Handler handler_;  // empty when only releases are waited for
  const ModifierMasks masks_;
  std::set<std::uint8_t> modifierKeys_;
  std::set<std::uint8_t> held_;  // keys whose repetitions are nobody's
  QDeadlineTimer deadline_{QDeadlineTimer::Forever};
  bool grabbed_ = false;
  QTimer timer_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace tarnwick::x11
