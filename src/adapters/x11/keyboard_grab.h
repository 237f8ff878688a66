#pragma once

#include <QAbstractNativeEventFilter>
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
// taken as soon as that one lets go. Owns itself.
class KeyboardGrab : public QAbstractNativeEventFilter {
 public:
  // True swallows the press. Absent for a key that the core has no name for.
  using Handler = std::function<bool(const std::optional<InputEvent>&)>;

  // The grab lasts as long as the registration, and then until the keys that are down are up or
  // another one is pressed: a combination just recorded is not pressed by its own repetitions.
  // Ten seconds without a new key, which keep nobody's screen from being locked, end it in any
  // case; `idle` is told so, unless the registration was dropped before. What is down when the grab
  // begins or the registration is dropped is heard of again only when it has been released, or when
  // the window has lost the focus.
  static Registration begin(WId window, Handler handler, std::function<void()> idle);

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  KeyboardGrab(WId window, Handler handler, std::function<void()> idle);
  ~KeyboardGrab() override;

  void grab();
  void ungrab();
  void end();
  void expire();
  void finishIfIdle();
  bool pressed(std::uint8_t keyCode, std::uint16_t state);
  void released(std::uint8_t keyCode);

  static inline const KeyboardGrab* holder_ = nullptr;  // whose the server's grab is
  const WId window_;
  Handler handler_;  // empty when only releases are waited for
  const std::function<void()> idle_;
  const ModifierMasks masks_;
  std::set<std::uint8_t> modifierKeys_;
  std::set<std::uint8_t> held_;  // keys whose repetitions are nobody's
  bool grabbed_ = false;
  bool focused_ = true;
  QTimer retry_;  // runs while another program has the keyboard
  QTimer bound_;
};

}  // namespace tarnwick::x11
