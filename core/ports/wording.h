#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace tarnwick {

// A fixed text that is not true on a platform, and what a person sees there. Both as they are in
// English, in the same context for the translators.
struct PlatformText {
  std::string_view fixed;
  const char* here;
};

// All that a platform words differently; empty where every fixed text is true. Outlives its users.
using Wording = std::span<const PlatformText>;

inline const char* worded(Wording wording, const char* fixed) {
  const auto found = std::find_if(wording.begin(), wording.end(),
                                  [fixed](const auto& text) { return text.fixed == fixed; });
  return found == wording.end() ? fixed : found->here;
}

}  // namespace tarnwick
