#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick::KeyboardShortcuts {

// Text of one character in UTF-8. Absent for what is no Unicode scalar value: beyond 32 bits or
// 0x10FFFF, or a surrogate.
std::optional<std::string> character(std::int64_t unicodeScalarValue);

// The character as the first one of a word in a title, in UTF-8 ("ß" gives "Ss"). What has no
// capital stays as it is.
std::string capitalised(char32_t character);
// A text in UTF-8 with its first character so.
std::string capitalised(const std::string& text);
// A capital letter as its small one; any other text as it is. Both in UTF-8.
std::string lowerCased(const std::string& text);

}  // namespace tarnwick::KeyboardShortcuts
