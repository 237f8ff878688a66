#pragma once

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "core/ports/hot_keys.h"
#include "utility/x11/keyboard_changes.h"
#include "utility/x11/modifier_masks.h"

namespace tarnwick::x11 {

// Hot keys as passive grabs on the root windows, on Qt's connection, so that a menu of ours can
// take the keyboard over while one is held. Keys on their way to a menu are those that reach any
// window of ours. When modifiers come, go or move to other keys, the grabs follow; one that another
// program has by then is tried again a few times, and at the next change.
class KeyGrabs : public HotKeys, public QAbstractNativeEventFilter {
 public:
  explicit KeyGrabs(KeyboardChanges& changes);
  ~KeyGrabs() override;

  Registration registerEventHotKey(std::uint32_t keyCode, KeyModifiers modifiers,
                                   HotKeyId id) override;
  bool isInForce(HotKeyId id) const override;
  // Tries to take the combination, and gives it back: whether another program has it. What is
  // registered here is ours. Asks the X server and waits for its answer.
  bool isTakenElsewhere(std::uint32_t keyCode, KeyModifiers modifiers);
  Registration watchHotKeys(std::function<void(const HotKeyEvent&)> callback) override;
  Registration watchMenuKeys(std::function<bool(const InputEvent&)> callback) override;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  struct HotKey {
    HotKeyId id;
    std::uint8_t keyCode = 0;  // the X server's
    KeyModifiers modifiers = KeyModifiers::none;
    std::optional<std::uint16_t> bits;  // absent while the keyboard lacks one of the modifiers
    bool grabbed = false;
  };
  // A key that is down and what its press has been.
  struct HeldKey {
    bool forHotKey = false;  // a press of a hot key was told, its release is to follow
    bool forMenu = false;    // a menu's watcher swallowed it
    KeyModifiers modifiers = KeyModifiers::none;
  };

  bool grab(HotKey& hotKey);
  void release(const HotKey& hotKey);
  void followMap();
  void grabMissing();
  bool hotKeyPressed(std::uint8_t keyCode, std::uint16_t state);
  bool menuKey(std::uint8_t keyCode, std::uint16_t state, bool pressed);
  void keyReleased(std::uint8_t keyCode);
  void tell(const HotKey& hotKey, bool pressed);
  void hold(std::uint8_t keyCode, const HeldKey& key);
  static bool isDown(std::uint8_t keyCode);
  void checkHeldKeys();

  ModifierMasks masks_;
  std::map<std::uint64_t, HotKey> hotKeys_;
  std::uint64_t lastHotKey_ = 0;
  std::map<std::uint8_t, HeldKey> held_;
  QTimer heldCheck_;
  QTimer retry_;
  std::shared_ptr<std::function<void(const HotKeyEvent&)>> watcher_;
  std::shared_ptr<std::function<bool(const InputEvent&)>> menuWatcher_;
  Registration mapChanges_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace tarnwick::x11
