#include "common/x11/keyboard_map.h"

namespace tarnwick::bar::x11 {

KeyboardMap::KeyboardMap() {
  auto* server = connection();
  const auto* setup = xcb_get_setup(server);
  first_ = setup->min_keycode;
  Pending<xcb_get_keyboard_mapping_reply> mapping(xcb_get_keyboard_mapping(
      server, setup->min_keycode,
      static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1)));
  Pending<xcb_get_modifier_mapping_reply> modifiers(xcb_get_modifier_mapping(server));
  if (const auto reply = mapping.take()) {
    const auto* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    keysyms_.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(reply.get()));
    keysymsPerKeycode_ = reply->keysyms_per_keycode;
  }
  if (const auto reply = modifiers.take()) {
    const auto* keys = xcb_get_modifier_mapping_keycodes(reply.get());
    for (auto& row : modifierKeys_) {
      row.assign(keys, keys + reply->keycodes_per_modifier);
      keys += reply->keycodes_per_modifier;
    }
  }
}

std::optional<xcb_keycode_t> KeyboardMap::keycode(std::uint32_t keysym) const {
  for (std::size_t i = 0; i < keysyms_.size(); ++i) {
    if (keysyms_[i] == keysym) return static_cast<xcb_keycode_t>(first_ + i / keysymsPerKeycode_);
  }
  return {};
}

std::uint16_t KeyboardMap::modifier(std::uint32_t keysym) const {
  for (std::size_t bit = 0; bit < modifierKeys_.size(); ++bit) {
    for (const auto key : modifierKeys_[bit]) {
      if (key < first_) continue;  // an empty place
      const std::size_t begin = (key - first_) * keysymsPerKeycode_;
      for (std::size_t i = begin; i < begin + keysymsPerKeycode_ && i < keysyms_.size(); ++i) {
        if (keysyms_[i] == keysym) return static_cast<std::uint16_t>(1U << bit);
      }
    }
  }
  return 0;
}

}  // namespace tarnwick::bar::x11
