#include "common/files/utf8.h"

namespace tarnwick::desktop {

namespace {

// Bytes of the valid character at the front; 0 when there is none.
std::size_t characterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  const std::size_t size = first < 0x80   ? 1
                           : first < 0xc2 ? 0
                           : first < 0xe0 ? 2
                           : first < 0xf0 ? 3
                           : first < 0xf5 ? 4
                                          : 0;
  if (size == 0 || size > text.size()) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return 0;
  }
  // Overlong forms, surrogates and what lies beyond the last plane.
  const bool wrong = (first == 0xe0 && byte(1) < 0xa0) || (first == 0xed && byte(1) > 0x9f) ||
                     (first == 0xf0 && byte(1) < 0x90) || (first == 0xf4 && byte(1) > 0x8f);
  return wrong ? 0 : size;
}

}  // namespace

std::string validUtf8(std::string_view text, std::size_t limit) {
  std::string valid;
  while (!text.empty()) {
    const std::size_t size = characterSize(text);
    const std::string_view character = size ? text.substr(0, size) : "\xEF\xBF\xBD";
    if (valid.size() + character.size() > limit) break;
    valid += character;
    text.remove_prefix(size ? size : 1);
  }
  return valid;
}

}  // namespace tarnwick::desktop
