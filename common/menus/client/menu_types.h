#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QHash>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarnwick {

inline constexpr int maximumMenuDepth = 64;
inline constexpr int maximumMenuEntries = 10'000;
inline constexpr int maximumMenuText = 1'000;  // characters of a label
inline constexpr int maximumMenuIconBytes = 1024 * 1024;
inline constexpr qsizetype maximumMenuIconTotal = 8 * 1024 * 1024;  // of all entries together
inline constexpr int maximumMenuProperties = 64;                    // of one entry

enum class MenuToggle : std::uint8_t { none, checkmark, radio };
enum class MenuToggleState : std::uint8_t { off, on, indeterminate };

// One entry of another application's menu (com.canonical.dbusmenu), with what is below it. The
// root has id 0 and no appearance of its own.
struct MenuEntry {
  int id = 0;
  QString label;        // as Qt shows it: "&" before the access key, "&&" for an ampersand
  QString shortcut;     // as text for people, "Ctrl+Q"; empty for none
  QString iconName;     // theme name or absolute path
  QByteArray iconData;  // PNG
  MenuToggle toggle = MenuToggle::none;
  MenuToggleState toggleState = MenuToggleState::indeterminate;
  bool separator = false;
  bool heading = false;
  bool enabled = true;
  bool visible = true;
  bool submenu = false;  // opens a submenu, be it one whose entries are not known yet
  std::vector<MenuEntry> children;

  // The label without its access-key mark.
  QString title() const;
};

// Takes one property over, or does nothing when it is unknown or of a wrong type. An invalid value
// stands for the property's default.
void applyMenuProperty(MenuEntry& entry, const QString& name, const QVariant& value);

// A label as it comes over the bus ("_" before the access key, "__" for an underscore) in Qt's
// form. One line, at most maximumMenuText characters of the original.
QString menuLabel(const QString& wire);

// Which of `entries` to show, as indexes: visible ones, without separators at the ends or beside
// one another.
std::vector<std::size_t> shownEntries(const std::vector<MenuEntry>& entries);

// The entry with that id at or below `root`; nullptr when there is none.
MenuEntry* findMenuEntry(MenuEntry& root, int id);

// Leaves every id below `root` once, so that it names one entry: of several the first is kept, and
// none with the root's own 0. Separators, which nobody names, get ids of their own instead.
void keepIdsUnique(MenuEntry& root);

// Puts the entry and all below it under their ids; of several with one id the first.
void indexMenuEntries(const MenuEntry& root, QHash<int, const MenuEntry*>& index);

// How much there is at and below an entry.
struct MenuExtent {
  int entries = 1;
  int depth = 0;  // levels below it
  qsizetype iconBytes = 0;
};
MenuExtent menuExtent(const MenuEntry& root);

// How many levels below `root` the entry with that id is; -1 when there is none.
int menuLevel(const MenuEntry& root, int id);

// A map of properties (a{sv}), the argument standing before it. Absent when there are more than
// maximumMenuProperties; the argument then stands behind the map all the same.
std::optional<QVariantMap> readMenuProperties(const QDBusArgument& argument);

}  // namespace tarnwick
