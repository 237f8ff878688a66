#pragma once

#include <string>

namespace tarnwick {

// The user's way of putting words in order.
class Collation {
 public:
  virtual ~Collation() = default;
  // Without regard to case. Negative when `first` comes before `second`, 0 when they are equal,
  // else positive. UTF-8.
  virtual int compareIgnoringCase(const std::string& first, const std::string& second) const = 0;
};

}  // namespace tarnwick
