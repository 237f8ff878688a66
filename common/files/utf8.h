#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

// The text with each byte that is not part of valid UTF-8 replaced by U+FFFD, cut after whole
// characters to at most `limit` bytes. File names and environments may hold anything.
std::string validUtf8(std::string_view text, std::size_t limit);

}  // namespace tarnwick::desktop
