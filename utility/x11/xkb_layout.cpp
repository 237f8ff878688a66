#include "utility/x11/xkb_layout.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <chrono>
#include <set>
#include <span>
#include <utility>

#include "common/x11/server.h"
#include "common/x11/xkb.h"
#include "utility/x11/key_codes.h"
#include "utility/x11/key_names.h"

namespace tarnwick::x11 {

namespace {

using namespace std::chrono_literals;

constexpr Duration usualRepeatDelay = 660ms;
constexpr Duration usualRepeatInterval = 40ms;
constexpr std::size_t lettersOfLatinLayouts = 20;  // some put a few of the 26 elsewhere

// Accents as they stand on their keys, from dead_grave on. Those that Unicode has only combined
// with a letter are so here.
constexpr char32_t accents[] = {U'`',  0xB4,   U'^',  U'~',  0xAF,   0x2D8,  0x2D9,  0xA8,
                                0xB0,  0x2DD,  0x2C7, 0xB8,  0x2DB,  0x37A,  0x309B, 0x309C,
                                0x323, 0x309,  0x31B, U'/',  0x1FBF, 0x1FFE, 0x2F5,  0x2F3,
                                0x2CD, 0xA788, 0x2F7, 0x32E, 0x324,  0x311,  U',',   0xA4};
// From dead_a on.
constexpr char32_t deadLetters[] = {U'a', U'A', U'e', U'E',  U'i',  U'I', U'o',
                                    U'O', U'u', U'U', 0x259, 0x18F, 0xB5};
// From dead_lowline on.
constexpr char32_t lines[] = {U'_', 0x2C8, 0x2CC, 0x338};

char32_t accent(xkb_keysym_t dead) {
  const struct {
    xkb_keysym_t first;
    std::span<const char32_t> signs;
  } rows[] = {
      {XKB_KEY_dead_grave, accents}, {XKB_KEY_dead_a, deadLetters}, {XKB_KEY_dead_lowline, lines}};
  for (const auto& row : rows) {
    if (dead >= row.first && dead - row.first < row.signs.size())
      return row.signs[dead - row.first];
  }
  return 0;
}

char32_t printed(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t group) {
  // A key may have fewer groups than the map; it then counts around, as the server does.
  const auto groups = xkb_keymap_num_layouts_for_key(keymap, key);
  if (groups == 0) return 0;
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap, key, group % groups, 0, &symbols);
  if (count != 1) return 0;
  const char32_t character = xkb_keysym_to_utf32(symbols[0]);
  const char32_t sign = character != 0 ? character : accent(symbols[0]);
  return sign >= 0x20 && sign != 0x7f ? sign : 0;
}

Reply<xcb_xkb_get_controls_reply_t> controls() {
  xcb_connection_t* const connection = server();
  if (!connection) return nullptr;
  return Reply<xcb_xkb_get_controls_reply_t>(xcb_xkb_get_controls_reply(
      connection, xcb_xkb_get_controls(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
}

bool isLatin(xkb_keymap* keymap, xkb_layout_index_t group) {
  std::set<char32_t> letters;
  for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
    const char32_t character = printed(keymap, key, group);
    if (character >= U'a' && character <= U'z') letters.insert(character);
  }
  return letters.size() >= lettersOfLatinLayouts;
}

}  // namespace

void XkbLayout::Unref::operator()(xkb_context* context) const {
  xkb_context_unref(context);
}

void XkbLayout::Unref::operator()(xkb_keymap* keymap) const {
  xkb_keymap_unref(keymap);
}

XkbLayout::XkbLayout(KeyboardChanges& changes)
    : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)),
      mapChanges_(changes.onMapChanged([this] {
        keymap_.reset();
        changed_.notify();
      })),
      layoutChanges_(changes.onLayoutChosen([this](std::uint32_t group) {
        choose(group);
        changed_.notify();
      })) {}

XkbLayout::~XkbLayout() = default;

void XkbLayout::load() const {
  xcb_connection_t* const connection = server();
  if (keymap_ || !connection || !context_) return;
  const auto device = xkb_x11_get_core_keyboard_device_id(connection);
  if (device < 0) return;
  keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection, device,
                                               XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!keymap_) return;
  const auto groups = xkb_keymap_num_layouts(keymap_.get());
  // The layout chosen last stays so when the map changes, as far as it is one of the new map.
  if (const auto before = std::exchange(latinGroup_, std::nullopt)) choose(*before);
  for (xkb_layout_index_t group = 0; group < groups && !latinGroup_; ++group) choose(group);
  const Reply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
      connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
  if (state) choose(state->group);
}

void XkbLayout::choose(std::uint32_t group) const {
  if (keymap_ && group < xkb_keymap_num_layouts(keymap_.get()) && isLatin(keymap_.get(), group)) {
    latinGroup_ = group;
  }
}

std::optional<char32_t> XkbLayout::character(std::uint16_t keyCode) const {
  load();
  const auto key = xKeyCode(keyCode);
  if (!key || !keymap_) return std::nullopt;
  if (!latinGroup_ && !latin_) {
    const xkb_rule_names names{"evdev", "pc105", "us", nullptr, nullptr};
    latin_.reset(xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
  }
  xkb_keymap* const keymap = latinGroup_ ? keymap_.get() : latin_.get();
  const char32_t character = keymap ? printed(keymap, *key, latinGroup_.value_or(0)) : 0;
  return character != 0 ? std::optional(character) : std::nullopt;
}

std::optional<std::string> XkbLayout::name(std::uint16_t keyCode) const {
  load();
  const auto key = xKeyCode(keyCode);
  const xkb_keysym_t* symbols = nullptr;
  if (!key || !keymap_ ||
      xkb_keymap_key_get_syms_by_level(keymap_.get(), *key, 0, 0, &symbols) != 1) {
    return std::nullopt;
  }
  return keyName(symbols[0]);
}

Duration XkbLayout::keyRepeatDelay() const {
  const auto reply = controls();
  return reply ? std::chrono::milliseconds(reply->repeatDelay) : usualRepeatDelay;
}

Duration XkbLayout::keyRepeatInterval() const {
  const auto reply = controls();
  return reply ? std::chrono::milliseconds(reply->repeatInterval) : usualRepeatInterval;
}

}  // namespace tarnwick::x11
