#include "core/shortcuts/hot_key_center.h"

#include <limits>

#include "core/shortcuts/module.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

bool fitsUnsigned32(std::int64_t number) {
  return number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
}

}  // namespace

HotKeyCenter::HotKeyCenter(HotKeys& hotKeys, NotificationCenter& notifications)
    : desktop_(hotKeys),
      openMenuObserver_(notifications.observe(menuDidBeginTracking,
                                              [this](const Notification&) { setMenuOpen(true); })),
      closeMenuObserver_(notifications.observe(
          menuDidEndTracking, [this](const Notification&) { setMenuOpen(false); })) {}

HotKeyCenter& HotKeyCenter::shared() {
  Module& module = Module::shared();
  if (!module.center) {
    module.center =
        std::make_unique<HotKeyCenter>(module.services->hotKeys, module.services->notifications);
    module.center->setEnabled(module.isEnabled);
  }
  return *module.center;
}

std::int64_t HotKeyCenter::nextHotKeyId() {
  return ++lastHotKeyId_;
}

bool HotKeyCenter::registerHotKey(const std::shared_ptr<HotKey>& hotKey) {
  hotKey->eventHotKeyRef = registerEventHotKey(*hotKey);
  if (!hotKey->eventHotKeyRef) return false;
  hotKeys_->insert_or_assign(hotKey->id, hotKey);
  hotKey->centerEntry = Registration([weak = std::weak_ptr(hotKeys_), id = hotKey->id] {
    if (const auto hotKeys = weak.lock()) hotKeys->erase(id);
  });
  setUpEventHandlerIfNeeded();
  applyMode();
  return true;
}

// A stored shortcut may hold any numbers. What no key has cannot be registered.
Registration HotKeyCenter::registerEventHotKey(const HotKey& hotKey) {
  if (!fitsUnsigned32(hotKey.carbonKeyCode) || !fitsUnsigned32(hotKey.carbonModifiers) ||
      !fitsUnsigned32(hotKey.id)) {
    return {};
  }
  return desktop_.registerEventHotKey(static_cast<std::uint32_t>(hotKey.carbonKeyCode),
                                      fromCarbon(hotKey.carbonModifiers),
                                      {signature, static_cast<std::uint32_t>(hotKey.id)});
}

bool HotKeyCenter::isInForce(const HotKey& hotKey) const {
  return !hotKey.eventHotKeyRef ||
         desktop_.isInForce({signature, static_cast<std::uint32_t>(hotKey.id)});
}

// Before the first registration there is nothing to hear.
void HotKeyCenter::setUpEventHandlerIfNeeded() {
  hasEventHandler_ = true;
}

void HotKeyCenter::setEnabled(bool enabled) {
  if (isEnabled_ == enabled) return;
  isEnabled_ = enabled;
  updateMode();
}

void HotKeyCenter::setMenuOpen(bool open) {
  if (isMenuOpen_ == open) return;
  isMenuOpen_ = open;
  updateMode();
}

void HotKeyCenter::updateMode() {
  const Mode mode = !isEnabled_ ? Mode::disabled : isMenuOpen_ ? Mode::menuOpen : Mode::normal;
  if (mode == mode_) return;
  mode_ = mode;
  if (hasEventHandler_) applyMode();
}

void HotKeyCenter::applyMode() {
  if (mode_ == Mode::normal) {
    resumeAllHotKeys();
  } else {
    pauseAllHotKeys();
  }
  setHotKeyEventHandlingEnabled(mode_ == Mode::normal);
  setRawKeyEventHandlingEnabled(mode_ == Mode::menuOpen);
}

void HotKeyCenter::pauseAllHotKeys() {
  for (const auto& hotKey : liveHotKeys()) hotKey->eventHotKeyRef.reset();
}

void HotKeyCenter::resumeAllHotKeys() {
  for (const auto& hotKey : liveHotKeys()) {
    if (hotKey->eventHotKeyRef) continue;
    hotKey->eventHotKeyRef = registerEventHotKey(*hotKey);
    if (hotKey->eventHotKeyRef) continue;
    hotKey->centerEntry.reset();
    if (const auto failed = hotKey->onRegistrationFailed) failed();
  }
}

void HotKeyCenter::setHotKeyEventHandlingEnabled(bool enabled) {
  if (static_cast<bool>(hotKeyEvents_) == enabled) return;
  hotKeyEvents_ =
      enabled
          ? desktop_.watchHotKeys([this](const HotKeyEvent& event) { handleHotKeyEvent(event); })
          : Registration();
}

void HotKeyCenter::setRawKeyEventHandlingEnabled(bool enabled) {
  if (static_cast<bool>(rawKeyEvents_) == enabled) return;
  rawKeyEvents_ = enabled ? desktop_.watchMenuKeys([this](const InputEvent& event) {
    return handleRawKeyEvent(event) == EventStatus::handled;
  })
                          : Registration();
}

EventStatus HotKeyCenter::handleHotKeyEvent(const HotKeyEvent& event) {
  if (event.hotKey.signature != signature) return EventStatus::notHandled;
  const auto entry = hotKeys_->find(event.hotKey.id);
  const auto hotKey = entry != hotKeys_->end() ? entry->second.lock() : nullptr;
  if (!hotKey) return EventStatus::notHandled;
  (event.pressed ? hotKey->onKeyDown : hotKey->onKeyUp)();
  return EventStatus::handled;
}

EventStatus HotKeyCenter::handleRawKeyEvent(const InputEvent& event) {
  const bool pressed = event.type == EventKind::keyDown;
  if (!pressed && event.type != EventKind::keyUp) return EventStatus::notHandled;
  if (pressed && event.isRepeat) return EventStatus::notHandled;
  if (contains(event.modifierFlags, KeyModifiers::unnamed)) return EventStatus::notHandled;
  const auto modifiers = carbon(event.modifierFlags & KeyModifiers::deviceIndependent);
  for (const auto& hotKey : liveHotKeys()) {
    if (hotKey->carbonKeyCode != event.keyCode) continue;
    if (normalised(hotKey->carbonModifiers) != modifiers) continue;
    (pressed ? hotKey->onKeyDown : hotKey->onKeyUp)();
    return EventStatus::handled;
  }
  return EventStatus::notHandled;
}

std::vector<std::shared_ptr<HotKey>> HotKeyCenter::liveHotKeys() const {
  std::vector<std::shared_ptr<HotKey>> live;
  for (const auto& [id, weak] : *hotKeys_) {
    if (auto hotKey = weak.lock()) live.push_back(std::move(hotKey));
  }
  return live;
}

}  // namespace tarnwick::KeyboardShortcuts
