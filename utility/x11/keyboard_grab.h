#pragma once

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "common/base/registration.h"
#include "core/ports/key_event.h"
#include "utility/x11/modifier_masks.h"

namespace tarnwick::x11 {

// Has the whole keyboard for a window that has the focus, also what others have grabbed passively.
// Presses of modifier keys reach no widget and not the handler. While another program has the
// keyboard, it is asked for again and again. Owns itself.
class KeyboardGrab : public QAbstractNativeEventFilter {
 public:
  // The press of a key that was up; absent for a key that the core has no name for. True keeps it
  // from the window.
  using Handler = std::function<bool(const std::optional<InputEvent>&)>;

  // The grab lasts as long as the registration. When the handler drops that, it goes on until the
  // keys that are down are up or another one is pressed: a combination just recorded is not pressed
  // by its own repetitions. After ten seconds without a new key the keyboard is given back in any
  // case, so that screen lockers are not refused for longer; `idle` is told so, unless the
  // registration was dropped before. Keys that are down when the grab begins, or pressed while the
  // registration lasts, are not heard of again, by any window of ours, before they were released.
  static Registration begin(WId window, Handler handler, std::function<void()> idle);

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  KeyboardGrab(WId window, Handler handler, std::function<void()> idle);
  ~KeyboardGrab() override;

  void grab();
  void ungrab();
  void end();
  void expire();
  void forgetReleased();
  void finishIfIdle();
  bool pressed(std::uint8_t keyCode, std::uint16_t state);
  void released(std::uint8_t keyCode);

  static inline const KeyboardGrab* holder_ = nullptr;  // the one that the server knows of
  const WId window_;
  Handler handler_;  // empty when only releases are waited for
  const std::function<void()> idle_;
  const ModifierMasks masks_;
  std::set<std::uint8_t> modifierKeys_;  // which do not repeat
  std::set<std::uint8_t> held_;          // other keys that are down, whose presses are repetitions
  bool handling_ = false;
  QTimer retry_;  // runs while another program has the keyboard
  QTimer bound_;
};

}  // namespace tarnwick::x11
