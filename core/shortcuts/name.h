#pragma once

#include <optional>
#include <string>

#include "core/shortcuts/shortcut.h"

namespace tarnwick::KeyboardShortcuts {

// A slot for a shortcut of the user's choice. Names of one raw value are the same name.
class Name {
 public:
  // Declares a name. The initial shortcut is stored unless the slot holds something already, be it
  // that the user wants none. In a later turn the hot-key center is made, if there is none yet.
  explicit Name(std::string rawValue, const std::optional<Shortcut>& initial = std::nullopt);
  // A name as such, without an initial shortcut and without any effect.
  static Name fromRawValue(std::string rawValue);

  // Toggles the panel.
  static Name togglePanel() { return Name("togglePanel"); }
  // Reveals every hidden item for a while.
  static Name revealEverything() { return Name("revealEverything"); }

  const std::string& rawValue() const { return rawValue_; }
  const std::optional<Shortcut>& initialShortcut() const { return initialShortcut_; }
  const std::optional<Shortcut>& defaultShortcut() const { return initialShortcut_; }

  // What getShortcut() and setShortcut() do.
  std::optional<Shortcut> shortcut() const;
  void setShortcut(const std::optional<Shortcut>& shortcut) const;

  bool operator==(const Name& other) const { return rawValue_ == other.rawValue_; }
  auto operator<=>(const Name& other) const { return rawValue_ <=> other.rawValue_; }

 private:
  Name() = default;

  std::string rawValue_;
  std::optional<Shortcut> initialShortcut_;
};

}  // namespace tarnwick::KeyboardShortcuts
