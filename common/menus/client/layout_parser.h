#pragma once

#include <QDBusArgument>
#include <QDeadlineTimer>
#include <optional>
#include <vector>

#include "common/menus/client/menu_types.h"

namespace tarnwick {

// Reads the layout a menu's owner sent, (ia{sv}av) with every child in a variant of the same type,
// a slice at a time, so that a long menu delays nothing else. Entries beyond maximumMenuDepth or
// maximumMenuEntries, children of another type and icons beyond maximumMenuIconTotal are left out;
// one entry with more than maximumMenuProperties makes the whole no layout.
class LayoutParser {
 public:
  // `layout` is the value as it came; anything but a layout yields no result.
  explicit LayoutParser(const QVariant& layout);
  LayoutParser(const LayoutParser&) = delete;
  LayoutParser& operator=(const LayoutParser&) = delete;
  ~LayoutParser();

  // Goes on until the end or the deadline, at least by one entry; true at the end.
  bool run(QDeadlineTimer deadline);

  // After the end; absent when what came was no layout.
  std::optional<MenuEntry> take();

 private:
  struct Level {
    QDBusArgument argument;  // standing in the array of children
    MenuEntry entry;
  };

  void enter(const QDBusArgument& structure);
  void leave();

  std::vector<Level> levels_;
  std::optional<MenuEntry> result_;
  int count_ = 0;
  qsizetype iconBytes_ = 0;
  bool bad_ = false;
};

}  // namespace tarnwick
