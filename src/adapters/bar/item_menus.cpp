#include "adapters/bar/item_menus.h"

#include <QDBusConnection>
#include <utility>
#include <vector>

namespace tarnwick {

ItemMenus::ItemMenus() {
  owners_.setConnection(QDBusConnection::sessionBus());
  owners_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(&owners_, &QDBusServiceWatcher::serviceUnregistered, this, &ItemMenus::onOwnerGone);
}

void ItemMenus::open(const BarItem& item) {
  while (!menus_.empty()) cancel(menus_.begin()->first);
  OpenMenu& menu = menus_[item.id];
  menu.owner = item.busName;
  owners_.addWatchedService(menu.owner);
  menu.client = std::make_unique<MenuClient>(item.busName, item.menuPath);
  menu.asked.insert(0);
  menu.client->open(0, this, [this, id = item.id](MenuClient::Failure failure) {
    const auto found = menus_.find(id);
    if (found == menus_.end()) return;
    if (failure != MenuClient::Failure::none) return;  // it may still answer
    found->second.answered = true;
    if (const MenuEntry* root = found->second.client->root()) fillSubmenus(id, *root, 1);
  });
}

// Menus that are filled only when they open.
void ItemMenus::fillSubmenus(std::uint64_t item, const MenuEntry& parent, int depth) {
  OpenMenu& menu = menus_.at(item);
  std::vector<int> empty;
  for (const MenuEntry& child : parent.children) {
    if (!child.submenu || !child.visible || depth > deepestSubmenu) continue;
    if (child.children.empty()) {
      if (menu.asked.insert(child.id).second) empty.push_back(child.id);
    } else {
      fillSubmenus(item, child, depth + 1);
    }
  }
  for (const int id : empty) {
    ++menu.pending;
    menu.client->open(id, this, [this, item, id, depth](MenuClient::Failure) {
      const auto found = menus_.find(item);
      if (found == menus_.end()) return;
      --found->second.pending;
      const MenuEntry* entry = found->second.client->entry(id);
      if (entry) fillSubmenus(item, MenuEntry(*entry), depth + 1);
    });
  }
}

const MenuEntry* ItemMenus::entry(std::uint64_t item, int id) const {
  const auto menu = menus_.find(item);
  if (menu == menus_.end() || !menu->second.answered || menu->second.pending > 0) return nullptr;
  return id == 0 ? menu->second.client->root() : menu->second.client->entry(id);
}

void ItemMenus::choose(std::uint64_t item, int entry) {
  auto menu = end(item);
  if (!menu) return;
  menu->client->click(entry, {menu->asked.begin(), menu->asked.end()}, 0);
  retire(std::move(menu->client));
}

void ItemMenus::cancel(std::uint64_t item) {
  auto menu = end(item);
  if (!menu) return;
  for (auto id = menu->asked.rbegin(); id != menu->asked.rend(); ++id) menu->client->close(*id);
  retire(std::move(menu->client));
}

Registration ItemMenus::watch(std::uint64_t item, std::function<void()> ended) {
  const auto menu = menus_.find(item);
  if (menu == menus_.end()) return {};
  return menu->second.ended.add(std::move(ended));
}

std::optional<ItemMenus::OpenMenu> ItemMenus::end(std::uint64_t item) {
  auto node = menus_.extract(item);
  if (node.empty()) return std::nullopt;
  owners_.removeWatchedService(node.mapped().owner);
  node.mapped().ended.notify();
  return std::move(node.mapped());
}

void ItemMenus::onOwnerGone(const QString& owner) {
  for (auto menu = menus_.begin(); menu != menus_.end(); ++menu) {
    if (menu->second.owner != owner) continue;
    if (auto ended = end(menu->first)) retire(std::move(ended->client));
    return;
  }
}

// What is under way is sent to its end. Callers may stand in one of the client's own callbacks.
void ItemMenus::retire(std::unique_ptr<MenuClient> client) {
  MenuClient* const last = client.release();
  last->setParent(this);
  if (last->isFinishing()) {
    connect(last, &MenuClient::finished, last, &QObject::deleteLater);
  } else {
    last->deleteLater();
  }
}

}  // namespace tarnwick
