#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "common/base/registration.h"
#include "core/ports/hot_keys.h"
#include "core/ports/notification_center.h"
#include "core/shortcuts/hot_key.h"

namespace tarnwick::KeyboardShortcuts {

enum class EventStatus : std::int32_t { handled = 0, notHandled = -9874 };

// Registers hot keys with the desktop and calls them. While a menu of this process is open, which
// has the whole keyboard, it watches the keys on their way to the menu in their stead.
class HotKeyCenter {
 public:
  enum class Mode : std::uint8_t { disabled, normal, menuOpen };
  static constexpr std::uint32_t signature = 0x51484B59;  // "QHKY"

  HotKeyCenter(HotKeys& hotKeys, NotificationCenter& notifications);

  // The module's own, made on first use. The module has its services.
  static HotKeyCenter& shared();

  std::int64_t nextHotKeyId();
  // False, and no trace left, when the combination cannot be had.
  bool registerHotKey(const std::shared_ptr<HotKey>& hotKey);

  // Whether a press of a registered one would be noticed. One that an open menu has paused counts.
  bool isInForce(const HotKey& hotKey) const;

  void setEnabled(bool enabled);
  Mode mode() const { return mode_; }

  EventStatus handleHotKeyEvent(const HotKeyEvent& event);
  EventStatus handleRawKeyEvent(const InputEvent& event);

 private:
  using WeakHotKeys = std::map<std::int64_t, std::weak_ptr<HotKey>>;

  Registration registerEventHotKey(const HotKey& hotKey);
  void setUpEventHandlerIfNeeded();
  void setMenuOpen(bool open);
  void updateMode();
  void applyMode();
  void pauseAllHotKeys();
  void resumeAllHotKeys();
  void setHotKeyEventHandlingEnabled(bool enabled);
  void setRawKeyEventHandlingEnabled(bool enabled);
  std::vector<std::shared_ptr<HotKey>> liveHotKeys() const;

  HotKeys& desktop_;
  std::int64_t lastHotKeyId_ = 0;
  const std::shared_ptr<WeakHotKeys> hotKeys_ = std::make_shared<WeakHotKeys>();
  bool hasEventHandler_ = false;
  bool isEnabled_ = true;
  bool isMenuOpen_ = false;
  Mode mode_ = Mode::normal;
  Registration hotKeyEvents_;  // present while they are handled
  Registration rawKeyEvents_;  // likewise
  Registration openMenuObserver_;
  Registration closeMenuObserver_;
};

}  // namespace tarnwick::KeyboardShortcuts
