#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarnwick::shortcuts {

// A key with modifiers as a configuration names them.
struct Combination {
  // The X server's bits for shift, control and Mod1 to Mod5; above them names that stand for
  // whichever of these has the key.
  static constexpr unsigned shift = 1, control = 4, mod1 = 8, alt = 0x100, super = 0x200,
                            other = 0x400;
  unsigned modifiers = 0;
  QString key;  // name of a key symbol; empty when the code is given
  int keyCode = 0;

  bool operator==(const Combination&) const = default;
};
using Combinations = std::vector<Combination>;

// How the names of modifiers are joined with the key's.
enum class Notation {
  gtk,      // <Primary><Alt>Left
  openbox,  // C-A-Left
  i3,       // Mod4+Shift+q
  qt,       // Meta+Shift+PgUp, with Qt's names of keys
};

// Absent for "none", "disabled" and what is no combination.
std::optional<Combination> parseCombination(const QString& text, Notation notation);

// What a desktop's configuration binds; empty when it is damaged.
Combinations openboxCombinations(const QByteArray& xml);
Combinations xfceCombinations(const QByteArray& users, const QByteArray& systems);
Combinations kdeCombinations(const QByteArray& ini);
Combinations lxqtCombinations(const QByteArray& ini);
Combinations i3Combinations(const QByteArray& text);
// Lines of `gsettings list-recursively`.
Combinations gsettingsCombinations(const QByteArray& lines);

}  // namespace tarnwick::shortcuts
