#include "core/shortcuts/recorder.h"

#include <utility>

#include "core/shortcuts/localized.h"
#include "core/shortcuts/module.h"
#include "core/shortcuts/special_key.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

constexpr double clickSlack = 3;  // points around the field that still belong to it

bool isFunctionKey(Key key) {
  const auto special = specialKey(key);
  return special && *special >= SpecialKey::f1 && *special <= SpecialKey::f20;
}

}  // namespace

bool recorderIsActive(const Notification& notification) {
  const auto found = notification.userInfo.find("isActive");
  const bool* const active =
      found != notification.userInfo.end() ? std::any_cast<bool>(&found->second) : nullptr;
  return active && *active;
}

RecorderCocoa::RecorderCocoa(RecorderField& field, std::variant<Name, Binding> storage,
                             OnChange onChange)
    : field_(field), storage_(std::move(storage)), onChange_(std::move(onChange)) {
  const Name* const name = std::get_if<Name>(&storage_);
  const auto& services = Module::shared().services;
  if (services) {
    layoutObserver_ = services->layout.onChanged([this] { updateStringValue(); });
  }
  if (name && services) {
    shortcutsNameChangeObserver_ = services->notifications.observe(
        shortcutByNameDidChange, [this, name](const Notification& notification) {
          const auto found = notification.userInfo.find("name");
          if (found == notification.userInfo.end()) return;
          const Name* const changed = std::any_cast<Name>(&found->second);
          if (changed && *changed == *name) updateStringValue();
        });
  }
}

RecorderCocoa::~RecorderCocoa() {
  if (std::exchange(isRecording_, false)) tellActive();
}

std::optional<Name> RecorderCocoa::shortcutName() const {
  const Name* const name = std::get_if<Name>(&storage_);
  return name ? std::optional(*name) : std::nullopt;
}

void RecorderCocoa::setShortcutName(const Name& name) {
  Name* const present = std::get_if<Name>(&storage_);
  if (!present || *present == name) return;
  *present = name;
  updateStringValue();
}

std::optional<Shortcut> RecorderCocoa::shortcut() const {
  if (const Name* const name = std::get_if<Name>(&storage_)) return getShortcut(*name);
  return std::get<Binding>(storage_).get();
}

void RecorderCocoa::setShortcut(const std::optional<Shortcut>& value) {
  if (value != shortcut()) store(value);
  updateStringValue();
}

void RecorderCocoa::store(const std::optional<Shortcut>& value) {
  if (const Name* const name = std::get_if<Name>(&storage_)) {
    KeyboardShortcuts::setShortcut(value, *name);
  } else {
    const auto set = std::get<Binding>(storage_).set;
    set(value);
  }
}

void RecorderCocoa::updateStringValue() {
  const auto value = shortcut();
  const std::string text = value ? value->presentableDescription() : std::string();
  field_.show({text, localized(isRecording_ ? "press_shortcut" : "record_shortcut"), !text.empty(),
               isRecording_});
}

void RecorderCocoa::tellActive() const {
  setPaused(isRecording_);
  if (const auto& services = Module::shared().services) {
    services->notifications.post({recorderActiveStatusDidChange, {{"isActive", isRecording_}}});
  }
}

void RecorderCocoa::becomeFirstResponder() {
  if (isRecording_) return;
  shortcutBeforeRecording_ = shortcut();
  systemShortcuts();  // read by the time something is typed
  isRecording_ = true;
  updateStringValue();
  tellActive();
}

bool RecorderCocoa::endRecording() {
  if (!isRecording_) return true;
  const std::weak_ptr<int> alive = alive_;
  shortcutBeforeRecording_.reset();
  isRecording_ = false;
  updateStringValue();
  tellActive();
  return !alive.expired();
}

void RecorderCocoa::preventBecomingKey() {
  canBecomeKey_ = false;
  const auto& services = Module::shared().services;
  if (!services) return;
  services->loop.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) canBecomeKey_ = true;
  });
}

void RecorderCocoa::windowDidResignKey() {
  if (isRecording_ && endRecording()) field_.resignFirstResponder();
}

void RecorderCocoa::mouseUp(Point position, Size fieldSize) {
  if (!isRecording_) return;
  const bool inside = position.x >= -clickSlack && position.y >= -clickSlack &&
                      position.x <= fieldSize.width + clickSlack &&
                      position.y <= fieldSize.height + clickSlack;
  if (!inside) field_.resignFirstResponder();
}

bool RecorderCocoa::keyDown(const std::optional<InputEvent>& event) {
  if (!isRecording_) return false;
  const auto candidate = event ? Shortcut::of(*event) : std::nullopt;
  if (!candidate) {
    field_.beep();
    return true;
  }
  const auto held = event->modifierFlags &
                    (KeyModifiers::deviceIndependent | KeyModifiers::unnamed) &
                    ~(KeyModifiers::capsLock | KeyModifiers::numericPad);
  const Key key(event->keyCode);
  if (held == KeyModifiers::none) {
    if (key == Key::tab) {
      endRecording();  // the focus moves by itself
      return false;
    }
    if (key == Key::escape) {
      if (endRecording()) field_.resignFirstResponder();
      return true;
    }
    if (key == Key::delete_ || key == Key::deleteForward) {
      clear();
      return true;
    }
  }
  const bool bare = (held & ~KeyModifiers::shift) == KeyModifiers::none;
  if (contains(held, KeyModifiers::unnamed) || (bare && !isFunctionKey(key))) {
    field_.beep();
    return true;
  }
  record(*candidate, CheckStep::menuItems);
  return true;
}

// Goes on behind the step whose warning the user has overridden.
void RecorderCocoa::record(const Shortcut& candidate, CheckStep from) {
  Checks checks{conflictPolicy, field_.mainMenu(), operatingSystem, validateShortcut, std::nullopt};
  const Name* const name = std::get_if<Name>(&storage_);
  if (name && candidate == shortcutBeforeRecording_) checks.boundName = name->rawValue();
  const std::weak_ptr<int> alive = alive_;
  const auto conflict = findConflict(candidate, checks, from);
  if (alive.expired()) return;
  if (!conflict) return accept(candidate);
  const bool warns = conflict->behavior == ConflictBehavior::warn;
  Alert alert{conflict->title, conflict->message, {}};
  if (warns) alert.buttons = {localized("ok"), localized("force_use_shortcut")};
  const auto next = static_cast<CheckStep>(static_cast<int>(conflict->step) + 1);
  if (!endRecording()) return;
  field_.resignFirstResponder();
  alert_ = field_.present(alert, [this, warns, candidate, next, alive](int answer) {
    if (alive.expired()) return;
    field_.makeFirstResponder();
    if (!alive.expired() && warns && answer == alertSecondButton) record(candidate, next);
  });
}

bool RecorderCocoa::change(const std::optional<Shortcut>& value) {
  const std::weak_ptr<int> alive = alive_;
  store(value);
  if (alive.expired()) return false;
  updateStringValue();
  const OnChange onChange = onChange_;
  if (onChange) onChange(value);
  return !alive.expired();
}

void RecorderCocoa::accept(const Shortcut& accepted) {
  if (change(accepted) && endRecording()) field_.resignFirstResponder();
}

void RecorderCocoa::clear() {
  if (shortcut() && change(std::nullopt)) field_.makeFirstResponder();
}

}  // namespace tarnwick::KeyboardShortcuts
