#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "common/base/callback_list.h"
#include "core/ports/keyboard_layout.h"
#include "utility/x11/keyboard_changes.h"

struct xkb_context;
struct xkb_keymap;

namespace tarnwick::x11 {

// What the keys print, by the X server's key map. The map is read again after it has changed.
class XkbLayout : public KeyboardLayout {
 public:
  explicit XkbLayout(KeyboardChanges& changes);
  ~XkbLayout() override;

  std::optional<char32_t> character(std::uint16_t keyCode) const override;
  std::optional<std::string> name(std::uint16_t keyCode) const override;
  Registration onChanged(std::function<void()> callback) override {
    return changed_.add(std::move(callback));
  }
  Duration keyRepeatDelay() const override;
  Duration keyRepeatInterval() const override;

 private:
  struct Unref {
    void operator()(xkb_context* context) const;
    void operator()(xkb_keymap* keymap) const;
  };
  using Keymap = std::unique_ptr<xkb_keymap, Unref>;

  void load() const;
  void choose(std::uint32_t group) const;

  const std::unique_ptr<xkb_context, Unref> context_;
  mutable Keymap keymap_;  // null until it is needed
  mutable Keymap latin_;   // for keyboards without any Latin layout; null until it is needed
  mutable std::optional<std::uint32_t> latinGroup_;  // the last one in use that has Latin letters
  CallbackList changed_;
  Registration mapChanges_;
  Registration layoutChanges_;
};

}  // namespace tarnwick::x11
