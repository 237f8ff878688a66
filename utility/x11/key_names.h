#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick::x11 {

// What a key is called that has a symbol instead of a character, for people and in UTF-8. Absent
// for no symbol.
std::optional<std::string> keyName(std::uint32_t keySymbol);

}  // namespace tarnwick::x11
