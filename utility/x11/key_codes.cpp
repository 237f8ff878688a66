#include "utility/x11/key_codes.h"

#include <algorithm>
#include <iterator>

namespace tarnwick::x11 {

namespace {

struct Place {
  std::uint16_t virtualKey;
  xcb_keycode_t keyCode;
};

// By virtual key. Modifier keys are left out: alone they make no combination.
// clang-format off
constexpr Place places[] = {
    {0x00, 38}, {0x01, 39}, {0x02, 40}, {0x03, 41}, {0x04, 43}, {0x05, 42}, {0x06, 52},
    {0x07, 53}, {0x08, 54}, {0x09, 55}, {0x0A, 94}, {0x0B, 56}, {0x0C, 24}, {0x0D, 25},
    {0x0E, 26}, {0x0F, 27}, {0x10, 29}, {0x11, 28}, {0x12, 10}, {0x13, 11}, {0x14, 12},
    {0x15, 13}, {0x16, 15}, {0x17, 14}, {0x18, 21}, {0x19, 18}, {0x1A, 16}, {0x1B, 20},
    {0x1C, 17}, {0x1D, 19}, {0x1E, 35}, {0x1F, 32}, {0x20, 30}, {0x21, 34}, {0x22, 31},
    {0x23, 33}, {0x24, 36}, {0x25, 46}, {0x26, 44}, {0x27, 48}, {0x28, 45}, {0x29, 47},
    {0x2A, 51}, {0x2B, 59}, {0x2C, 61}, {0x2D, 57}, {0x2E, 58}, {0x2F, 60}, {0x30, 23},
    {0x31, 65}, {0x32, 49}, {0x33, 22}, {0x35, 9}, {0x40, 195}, {0x41, 91}, {0x43, 63},
    {0x45, 86}, {0x47, 77}, {0x48, 123}, {0x49, 122}, {0x4A, 121}, {0x4B, 106}, {0x4C, 104},
    {0x4E, 82}, {0x4F, 196}, {0x50, 197}, {0x51, 125}, {0x52, 90}, {0x53, 87}, {0x54, 88},
    {0x55, 89}, {0x56, 83}, {0x57, 84}, {0x58, 85}, {0x59, 79}, {0x5A, 198}, {0x5B, 80},
    {0x5C, 81}, {0x5D, 132}, {0x5E, 97}, {0x60, 71}, {0x61, 72}, {0x62, 73}, {0x63, 69},
    {0x64, 74}, {0x65, 75}, {0x66, 102}, {0x67, 95}, {0x68, 100}, {0x69, 191}, {0x6A, 194},
    {0x6B, 192}, {0x6D, 76}, {0x6F, 96}, {0x71, 193}, {0x72, 118}, {0x73, 110}, {0x74, 112},
    {0x75, 119}, {0x76, 70}, {0x77, 115}, {0x78, 68}, {0x79, 117}, {0x7A, 67}, {0x7B, 113},
    {0x7C, 114}, {0x7D, 116}, {0x7E, 111},
};
// clang-format on

constexpr xcb_keycode_t modifierKeys[] = {37, 50, 62, 64, 66, 105, 108, 133, 134};

// Keys that the ANSI layout lacks are told apart by the server's own code.
constexpr std::uint16_t ownCodes = 0x100;
constexpr std::uint16_t lastKeyCode = 255;

bool isOwn(xcb_keycode_t keyCode) {
  return std::none_of(std::begin(places), std::end(places),
                      [&](const Place& p) { return p.keyCode == keyCode; }) &&
         std::find(std::begin(modifierKeys), std::end(modifierKeys), keyCode) ==
             std::end(modifierKeys);
}

}  // namespace

std::optional<xcb_keycode_t> xKeyCode(std::uint32_t virtualKey) {
  if (virtualKey >= ownCodes && virtualKey <= ownCodes + lastKeyCode) {
    const auto own = static_cast<xcb_keycode_t>(virtualKey - ownCodes);
    return isOwn(own) ? std::optional(own) : std::nullopt;
  }
  const auto* const place = std::find_if(std::begin(places), std::end(places), [&](const Place& p) {
    return p.virtualKey == virtualKey;
  });
  return place != std::end(places) ? std::optional(place->keyCode) : std::nullopt;
}

std::optional<std::uint16_t> virtualKey(xcb_keycode_t keyCode) {
  const auto* const place = std::find_if(std::begin(places), std::end(places),
                                         [&](const Place& p) { return p.keyCode == keyCode; });
  if (place != std::end(places)) return place->virtualKey;
  return isOwn(keyCode) ? std::optional(static_cast<std::uint16_t>(ownCodes + keyCode))
                        : std::nullopt;
}

}  // namespace tarnwick::x11
