#include "utility/desktop_shortcuts/combination.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

namespace tarnwick::shortcuts {

namespace {

constexpr int longest = 100;  // characters of a combination

// 0 for a name that is none of a modifier.
unsigned modifier(const QString& name, Notation notation) {
  using C = Combination;
  if (notation == Notation::openbox) {
    static const QHash<QString, unsigned> letters{
        {"C", C::control}, {"A", C::alt},   {"S", C::shift}, {"W", C::super},
        {"M", C::other},   {"H", C::other}, {"Mod1", 8},     {"Mod2", 16},
        {"Mod3", 32},      {"Mod4", 64},    {"Mod5", 128}};
    return letters.value(name, 0);
  }
  static const QHash<QString, unsigned> names{{"shift", C::shift},
                                              {"control", C::control},
                                              {"ctrl", C::control},
                                              {"ctl", C::control},
                                              {"primary", C::control},
                                              {"alt", C::alt},
                                              {"super", C::super},
                                              {"hyper", C::other},
                                              {"mod1", 8},
                                              {"mod2", 16},
                                              {"mod3", 32},
                                              {"mod4", 64},
                                              {"mod5", 128}};
  const QString lower = name.toLower();
  // Qt calls the key with the logo Meta.
  if (lower == "meta") return notation == Notation::qt ? C::super : C::other;
  return names.value(lower, 0);
}

QString symbolOfQtKey(const QString& key) {
  static const QHash<QString, QString> names{{"PgUp", "Prior"},
                                             {"PgDown", "Next"},
                                             {"Del", "Delete"},
                                             {"Ins", "Insert"},
                                             {"Esc", "Escape"},
                                             {"Enter", "KP_Enter"},
                                             {"Backspace", "BackSpace"},
                                             {"Space", "space"},
                                             {"Backtab", "Tab"},
                                             {"ScrollLock", "Scroll_Lock"},
                                             {"Media Play", "XF86AudioPlay"},
                                             {"Media Stop", "XF86AudioStop"},
                                             {"Media Previous", "XF86AudioPrev"},
                                             {"Media Next", "XF86AudioNext"},
                                             {"Monitor Brightness Up", "XF86MonBrightnessUp"},
                                             {"Monitor Brightness Down", "XF86MonBrightnessDown"},
                                             {"Calculator", "XF86Calculator"},
                                             {"Launch Mail", "XF86Mail"},
                                             {"Home Page", "XF86HomePage"},
                                             {"Search", "XF86Search"},
                                             {"Volume Up", "XF86AudioRaiseVolume"},
                                             {"Volume Down", "XF86AudioLowerVolume"},
                                             {"Volume Mute", "XF86AudioMute"}};
  return names.value(key, key);
}

std::optional<Combination> withKey(unsigned modifiers, QString key, Notation notation) {
  Combination combination{modifiers, {}, 0};
  if (notation == Notation::qt) key = symbolOfQtKey(key);
  if (key.startsWith("0x")) {
    bool ok = false;
    combination.keyCode = key.toInt(&ok, 16);
    if (!ok || combination.keyCode < 8 || combination.keyCode > 255) return std::nullopt;
  } else {
    combination.key = key;
  }
  // A name of a symbol, or the one character that the key prints.
  static const QRegularExpression symbol("^([A-Za-z0-9_ ]+|[^\\p{C}])$");
  const QString lower = key.toLower();
  if (!symbol.match(key).hasMatch() || lower == "none" || lower == "disabled") return std::nullopt;
  return combination;
}

}  // namespace

std::optional<Combination> parseCombination(const QString& text, Notation notation) {
  QString rest = text.trimmed();
  if (rest.isEmpty() || rest.size() > longest) return std::nullopt;
  unsigned modifiers = 0;
  if (notation == Notation::gtk) {
    while (rest.startsWith('<')) {
      const auto end = rest.indexOf('>');
      const unsigned bit = end < 0 ? 0 : modifier(rest.mid(1, end - 1), notation);
      if (bit == 0) return std::nullopt;
      modifiers |= bit;
      rest.remove(0, end + 1);
    }
    return withKey(modifiers, rest, notation);
  }
  const QChar separator = notation == Notation::openbox ? '-' : '+';
  // A separator at the end is the key itself.
  for (auto at = rest.indexOf(separator); at > 0 && at + 1 < rest.size();
       at = rest.indexOf(separator)) {
    const QString name = rest.left(at);
    const unsigned bit = modifier(name, notation);
    const bool ignored = notation == Notation::i3 && name.startsWith("Group");
    if (bit == 0 && !ignored) return std::nullopt;
    modifiers |= bit;
    rest.remove(0, at + 1);
  }
  return withKey(modifiers, rest, notation);
}

}  // namespace tarnwick::shortcuts
