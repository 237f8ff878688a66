#include "common/menus/client/chosen_entry.h"

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

std::vector<int> sortedIds(const Entries& entries) {
  std::vector<int> ids;
  for (const MenuEntry* entry : entries) ids.push_back(entry->id);
  std::sort(ids.begin(), ids.end());
  return ids;
}

const MenuEntry* ofId(const Entries& entries, int id) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [id](const MenuEntry* entry) { return entry->id == id; });
  return found == entries.end() ? nullptr : *found;
}

// For each entry shown the present one of its title. Of several under one title it is the one of
// the same id when their ids are still the same, else the one at the same place among them; nullptr
// when there are more or fewer of them now.
Entries sameTitled(const Entries& shown, const Entries& present) {
  QHash<QString, std::pair<Entries, Entries>> byTitle;
  for (const MenuEntry* entry : shown) byTitle[entry->title()].first.push_back(entry);
  for (const MenuEntry* entry : present) byTitle[entry->title()].second.push_back(entry);
  QHash<const MenuEntry*, const MenuEntry*> found;
  for (const auto& [before, now] : std::as_const(byTitle)) {
    if (before.size() != now.size()) continue;
    const bool sameIds = sortedIds(before) == sortedIds(now);
    for (std::size_t i = 0; i < now.size(); ++i) {
      found[before[i]] = sameIds ? ofId(now, before[i]->id) : now[i];
    }
  }
  Entries same;
  for (const MenuEntry* entry : shown) same.push_back(found.value(entry));
  return same;
}

// What the entry of one level is now; nullptr when that cannot be told.
const MenuEntry* presentEntry(const Entries& shown, const Entries& present,
                              const MenuEntry* chosen) {
  const Entries same = sameTitled(shown, present);
  const auto survives = [&](std::size_t i) { return same[i] && same[i]->id == shown[i]->id; };
  std::size_t at = 0;
  bool renumbered = false;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (shown[i] == chosen) at = i;
    if (same[i] && !survives(i)) renumbered = true;
  }
  if (renumbered || same[at]) return same[at];

  // Its title is gone, or there are more or fewer of them.
  const MenuEntry* const found = ofId(present, chosen->id);
  if (!found || shown.size() == present.size()) return found;
  bool laterSurvives = false;
  for (std::size_t i = at + 1; i < shown.size(); ++i) laterSurvives = laterSurvives || survives(i);
  if (found->title() == chosen->title()) return laterSurvives ? found : nullptr;
  const bool before = at == 0 ? found == present.front() : survives(at - 1);
  const bool after = at + 1 == shown.size() ? found == present.back() : survives(at + 1);
  return before && after ? found : nullptr;
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
