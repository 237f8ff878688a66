#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "common/base/callback_list.h"
#include "core/ports/hot_keys.h"
#include "core/ports/keyboard_layout.h"

namespace tarnwick::test {

// A keyboard in memory: who has which combination, and keys to press.
class FakeKeyboard : public HotKeys, public KeyboardLayout {
 public:
  using Combination = std::pair<std::uint32_t, KeyModifiers>;

  std::set<Combination> takenByOthers;
  std::map<Combination, HotKeyId> registered;
  std::vector<HotKeyId> registrations;  // all there ever were
  std::set<HotKeyId> notInForce;
  std::map<std::uint16_t, char32_t> prints{{40, U'k'}};
  std::map<std::uint16_t, std::string> names;
  CallbackList layoutChanges;

  // Come to whoever has registered the combination.
  void press(Combination combination) { hotKeyEvent(combination, true); }
  void release(Combination combination) { hotKeyEvent(combination, false); }
  // False when nobody listens or the key was not swallowed.
  bool menuKey(const InputEvent& event) { return menuKeys && menuKeys(event); }

  std::function<void(const HotKeyEvent&)> hotKeys;
  std::function<bool(const InputEvent&)> menuKeys;

  Registration registerEventHotKey(std::uint32_t keyCode, KeyModifiers modifiers,
                                   HotKeyId id) override {
    const Combination combination(keyCode, modifiers);
    if (takenByOthers.contains(combination) || registered.contains(combination)) return {};
    registered[combination] = id;
    registrations.push_back(id);
    return Registration([this, combination] { registered.erase(combination); });
  }
  bool isInForce(HotKeyId id) const override { return !notInForce.contains(id); }
  Registration watchHotKeys(std::function<void(const HotKeyEvent&)> callback) override {
    hotKeys = std::move(callback);
    return Registration([this] { hotKeys = nullptr; });
  }
  Registration watchMenuKeys(std::function<bool(const InputEvent&)> callback) override {
    menuKeys = std::move(callback);
    return Registration([this] { menuKeys = nullptr; });
  }

  std::optional<char32_t> character(std::uint16_t keyCode) const override {
    const auto found = prints.find(keyCode);
    return found != prints.end() ? std::optional(found->second) : std::nullopt;
  }
  std::optional<std::string> name(std::uint16_t keyCode) const override {
    const auto found = names.find(keyCode);
    return found != names.end() ? std::optional(found->second) : std::nullopt;
  }
  Registration onChanged(std::function<void()> callback) override {
    return layoutChanges.add(std::move(callback));
  }
  Duration keyRepeatDelay() const override { return std::chrono::milliseconds(500); }
  Duration keyRepeatInterval() const override { return std::chrono::milliseconds(40); }

 private:
  void hotKeyEvent(Combination combination, bool pressed) {
    const auto found = registered.find(combination);
    if (found != registered.end() && hotKeys) hotKeys({found->second, pressed});
  }
};

}  // namespace tarnwick::test
