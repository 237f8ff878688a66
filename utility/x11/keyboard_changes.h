#pragma once

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>

#include "common/base/callback_list.h"

namespace tarnwick::x11 {

// Tells when what the keys mean has changed: another layout was loaded or chosen, a key remapped, a
// keyboard plugged in. Toolkits select these events, so nothing is selected here.
class KeyboardChanges : public QAbstractNativeEventFilter {
 public:
  KeyboardChanges();
  ~KeyboardChanges() override;

  // Called once for a burst of changes of the key map, a moment after it.
  Registration onMapChanged(std::function<void()> callback) {
    return mapChanged_.add(std::move(callback));
  }
  // Called at once, with the number of the layout in use now.
  Registration onLayoutChosen(std::function<void(std::uint32_t)> callback);

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  std::uint8_t keyboardEvent_ = 0;      // first event of the extension; 0 without it
  std::optional<std::uint32_t> group_;  // unknown until it is told
  CallbackList mapChanged_;
  CallbackList layoutChosen_;
  QTimer settling_;
};

}  // namespace tarnwick::x11
