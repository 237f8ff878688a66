#pragma once

#include <string>
#include <vector>

namespace tarnwick {

// A warning that waits for an answer.
struct Alert {
  std::string title;
  std::string message;               // may be empty
  std::vector<std::string> buttons;  // none for a single one that only dismisses it
};

// Answers are the number of the button chosen, counted from here.
inline constexpr int alertFirstButton = 1000;
inline constexpr int alertSecondButton = 1001;

}  // namespace tarnwick
