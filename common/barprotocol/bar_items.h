#pragma once

#include <QDBusMessage>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick {

// One status item as the bar lists it.
struct BarItem {
  std::uint64_t id = 0;
  std::int32_t pid = 0;  // owning process; 0 when the bar does not know
  QString kind;          // sni, xembed or native
  QString hint;          // item Id, WM_CLASS or autosave name
  QString title;
  Rect frame;
  QString busName;
  QString objectPath;
  QString menuPath;  // empty when it has no dbusmenu
};

// The answer to org.tarnwick.MenuBar1.Items(), in the bar's order: at most 5,000 items, texts cut
// to 1,000 characters, items with frames that are no numbers left out. Absent when the answer is of
// another type.
std::optional<std::vector<BarItem>> parseBarItems(const QDBusMessage& reply);

}  // namespace tarnwick
