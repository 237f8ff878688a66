#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tarnwick {

// A combination that the desktop answers to: a key by its place (KeyboardShortcuts::Key) and
// modifiers (KeyboardShortcuts::carbonModifier).
struct TakenShortcut {
  std::int64_t carbonKeyCode = 0;
  std::int64_t carbonModifiers = 0;
  bool operator==(const TakenShortcut&) const = default;
};

// The desktop's own shortcuts, as its keyboard settings have them.
class SystemShortcuts {
 public:
  virtual ~SystemShortcuts() = default;

  // Those that are switched on, as last read; never waits. Empty when they cannot be known.
  virtual std::vector<TakenShortcut> taken() = 0;

  virtual bool isTaken(const TakenShortcut& shortcut) {
    const auto all = taken();
    return std::find(all.begin(), all.end(), shortcut) != all.end();
  }
};

}  // namespace tarnwick
