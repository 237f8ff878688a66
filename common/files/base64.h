#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

// RFC 4648 section 4, padded.
std::string encodeBase64(std::string_view bytes);
// Absent when it is not exactly that.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace tarnwick::desktop
