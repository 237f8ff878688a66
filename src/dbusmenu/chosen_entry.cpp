#include "dbusmenu/chosen_entry.h"

#include <QHash>
#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

using Entries = std::vector<const MenuEntry*>;

// What people tell apart by its title.
Entries titled(const MenuEntry& parent) {
  Entries entries;
  for (const MenuEntry& child : parent.children) {
    if (child.visible && !child.separator) entries.push_back(&child);
  }
  return entries;
}

// The way from below the root to an entry; empty when it is not there.
bool findPath(const MenuEntry& below, int id, Entries& path) {
  for (const MenuEntry& child : below.children) {
    path.push_back(&child);
    if (child.id == id || findPath(child, id, path)) return true;
    path.pop_back();
  }
  return false;
}

// For each entry shown the present one at its place among those of its title; nullptr when there
// are more or fewer of them now.
Entries sameTitled(const Entries& shown, const Entries& present) {
  QHash<QString, std::pair<Entries, Entries>> byTitle;
  for (const MenuEntry* entry : shown) byTitle[entry->title()].first.push_back(entry);
  for (const MenuEntry* entry : present) byTitle[entry->title()].second.push_back(entry);
  QHash<const MenuEntry*, const MenuEntry*> found;
  for (const auto& [before, now] : std::as_const(byTitle)) {
    if (before.size() != now.size()) continue;
    for (std::size_t i = 0; i < now.size(); ++i) found[before[i]] = now[i];
  }
  Entries same;
  for (const MenuEntry* entry : shown) same.push_back(found.value(entry));
  return same;
}

// What the entry of one level is now; nullptr when that cannot be told.
const MenuEntry* presentEntry(const Entries& shown, const Entries& present,
                              const MenuEntry* chosen) {
  const Entries same = sameTitled(shown, present);
  const MenuEntry* ofTitle = nullptr;
  bool renumbered = false;
  bool laterIsThere = false;
  bool isLater = false;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (shown[i] == chosen) ofTitle = same[i];
    if (same[i] && same[i]->id != shown[i]->id) renumbered = true;
    if (same[i] && isLater) laterIsThere = true;
    isLater = isLater || shown[i] == chosen;
  }
  if (renumbered || (shown.size() != present.size() && !laterIsThere)) return ofTitle;
  const auto ofId = std::find_if(present.begin(), present.end(),
                                 [&](const MenuEntry* entry) { return entry->id == chosen->id; });
  return ofId == present.end() ? nullptr : *ofId;
}

}  // namespace

std::optional<int> presentId(const MenuEntry& shown, const MenuEntry& present, int id) {
  Entries path;
  if (!findPath(shown, id, path)) return std::nullopt;
  const MenuEntry* before = &shown;
  const MenuEntry* now = &present;
  for (const MenuEntry* chosen : path) {
    now = presentEntry(titled(*before), titled(*now), chosen);
    if (!now || now->submenu != chosen->submenu) return std::nullopt;
    before = chosen;
  }
  if (!now->enabled || now->heading) return std::nullopt;
  return now->id;
}

}  // namespace tarnwick
