#pragma once

#include <string>
#include <vector>

namespace tarnwick::bar {

// One order of item keys out of two: all of `ours` as they stand, and each key only `theirs` has
// behind the key it follows there. No key is lost but those beyond `limit`, of `theirs` first.
std::vector<std::string> mergedOrder(std::vector<std::string> ours,
                                     const std::vector<std::string>& theirs, std::size_t limit);

}  // namespace tarnwick::bar
