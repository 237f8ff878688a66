#include "common/files/base64.h"

#include <cstdint>

namespace tarnwick::desktop {

namespace {
constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}

std::string encodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      text += j <= group.size() ? kDigits[bits >> (18 - 6 * j) & 63] : '=';
    }
  }
  return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t digits = text.size();
  for (int i = 0; i < 2 && digits > 0 && text[digits - 1] == '='; ++i) --digits;
  std::string bytes;
  bytes.reserve(digits * 3 / 4);
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text.substr(0, digits)) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>(bits >> count & 0xff);
    }
  }
  return bytes;
}

}  // namespace tarnwick::desktop
