#include "utility/bar_client/item_menus.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QInputEvent>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "common/barprotocol/bar_protocol.h"
#include "common/menus/client/chosen_entry.h"

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

// From the press on. The core looks twelve times for a menu's entries, every 50 ms: the last time
// comes after this.
constexpr auto patience = 550ms;
constexpr auto unwatchedLife = 5s;      // from the press on; much longer than the core looks
constexpr auto rereadPatience = 500ms;  // for changes announced before an entry was chosen
constexpr std::size_t mostAsked = 64;   // menus asked for in one opening

// Submenus within submenus are asked for one after the other: each gets half of what is left.
std::chrono::milliseconds aboutToShowPatience(const QDeadlineTimer& deadline) {
  return std::chrono::milliseconds(deadline.remainingTime()) / 2;
}

void closeFromTheInside(MenuClient& client, const std::vector<int>& menus) {
  for (auto id = menus.rbegin(); id != menus.rend(); ++id) client.close(*id);
}

}  // namespace

ItemMenus::ItemMenus() {
  owners_.setConnection(QDBusConnection::sessionBus());
  owners_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(&owners_, &QDBusServiceWatcher::serviceUnregistered, this, &ItemMenus::onOwnerGone);
}

ItemMenus::~ItemMenus() {
  closeAll();
}

void ItemMenus::closeAll() {
  while (!menus_.empty()) cancel(menus_.begin()->first);
}

ItemMenus::OpenMenu* ItemMenus::find(std::uint64_t item, const MenuClient* client) {
  const auto menu = menus_.find(item);
  return menu != menus_.end() && menu->second.client.get() == client ? &menu->second : nullptr;
}

void ItemMenus::open(const BarItem& item, std::optional<QPointF> place) {
  closeAll();
  listen(true);
  time_ = 0;
  OpenMenu& menu = menus_[item.id];
  menu.item = item;
  menu.place = place;
  menu.patience.setRemainingTime(patience);
  owners_.addWatchedService(item.busName);
  menu.client = std::make_unique<MenuClient>(item.busName, item.menuPath);
  menu.asked.push_back(0);
  MenuClient* const client = menu.client.get();
  connect(client, &MenuClient::layoutChanged, this,
          [this, id = item.id, client] { onLayout(id, client); });
  client->open(
      0, this,
      [this, id = item.id, client](MenuClient::Failure failure) {
        if (failure == MenuClient::Failure::absent && find(id, client)) closeMenuless(id);
      },
      aboutToShowPatience(menu.patience));
  QTimer::singleShot(patience, Qt::PreciseTimer, client, [this, id = item.id, client] {
    connect(client, &MenuClient::layoutChanged, this,
            [this, id, client] { closeIfEmpty(id, client); });
    closeIfEmpty(id, client);
  });
  QTimer::singleShot(unwatchedLife, client, [this, id = item.id, client] {
    const OpenMenu* const unwatched = find(id, client);
    if (unwatched && unwatched->ended.empty()) cancel(id);
  });
}

// The owner has answered, perhaps once more: late or with other entries.
void ItemMenus::onLayout(std::uint64_t item, const MenuClient* client) {
  if (find(item, client) && client->root()) fillSubmenus(item, *client->root(), 1);
}

// Some owners always have a menu object and mean a click by it: theirs stays empty.
void ItemMenus::closeIfEmpty(std::uint64_t item, const MenuClient* client) {
  const OpenMenu* const menu = find(item, client);
  if (!menu || !client->root() || !menu->ended.empty()) return;
  if (shownEntries(client->root()->children).empty()) closeMenuless(item);
}

void ItemMenus::closeMenuless(std::uint64_t item) {
  const auto place = menus_.at(item).place;
  cancel(item);
  emit menuless(item, place);
}

// Menus that are filled only when they open.
void ItemMenus::fillSubmenus(std::uint64_t item, const MenuEntry& parent, int depth) {
  if (depth > deepestSubmenu) return;
  OpenMenu& menu = menus_.at(item);
  for (const MenuEntry& child : parent.children) {
    if (!child.submenu || !child.visible) continue;
    if (!child.children.empty()) {
      fillSubmenus(item, child, depth + 1);
      continue;
    }
    const bool known =
        std::find(menu.asked.begin(), menu.asked.end(), child.id) != menu.asked.end();
    if (known || menu.asked.size() >= mostAsked) continue;
    menu.asked.push_back(child.id);
    ++menu.pending;
    MenuClient* const client = menu.client.get();
    client->open(
        child.id, this,
        [this, item, client](MenuClient::Failure) {
          if (OpenMenu* const open = find(item, client)) --open->pending;
        },
        aboutToShowPatience(menu.patience));
  }
}

const MenuEntry* ItemMenus::entry(std::uint64_t item, int id) const {
  const auto menu = menus_.find(item);
  if (menu == menus_.end() || !menu->second.client->root()) return nullptr;
  if (menu->second.pending > 0 && !menu->second.patience.hasExpired()) return nullptr;
  return id == 0 ? menu->second.client->root() : menu->second.client->entry(id);
}

void ItemMenus::choose(std::uint64_t item, int entry) {
  auto menu = end(item);
  if (!menu) return;
  MenuClient* const client = menu->client.release();
  client->setParent(this);
  const auto press = [this, client, entry, time = time_, shown = std::move(menu->shown),
                      asked = std::move(menu->asked)](MenuClient::Failure failure) {
    const bool isRead = failure == MenuClient::Failure::none && client->root();
    const auto id = shown && isRead ? presentId(*shown, *client->root(), entry) : std::nullopt;
    if (id) {
      client->click(*id, asked, time);
    } else {
      closeFromTheInside(*client, asked);
    }
    retire(std::unique_ptr<MenuClient>(client));
  };
  // What the owner has just announced may be that this id is another entry's now.
  if (client->isOutdated()) {
    client->read(press, rereadPatience);
  } else {
    press(MenuClient::Failure::none);
  }
}

void ItemMenus::cancel(std::uint64_t item) {
  auto menu = end(item);
  if (!menu) return;
  closeFromTheInside(*menu->client, menu->asked);
  retire(std::move(menu->client));
}

Registration ItemMenus::watch(std::uint64_t item, std::function<void()> ended) {
  const auto menu = menus_.find(item);
  if (menu == menus_.end()) return {};
  if (const MenuEntry* const root = menu->second.client->root()) menu->second.shown = *root;
  return menu->second.ended.add(std::move(ended));
}

std::optional<ItemMenus::OpenMenu> ItemMenus::end(std::uint64_t item) {
  auto node = menus_.extract(item);
  if (node.empty()) return std::nullopt;
  owners_.removeWatchedService(node.mapped().item.busName);
  if (menus_.empty()) listen(false);
  node.mapped().ended.notify();
  return std::move(node.mapped());
}

void ItemMenus::onOwnerGone(const QString& owner) {
  for (auto menu = menus_.begin(); menu != menus_.end(); ++menu) {
    if (menu->second.item.busName != owner) continue;
    if (auto ended = end(menu->first)) retire(std::move(ended->client));
    return;
  }
}

void ItemMenus::keepOnly(const std::vector<BarItem>& items) {
  std::vector<std::uint64_t> gone;
  for (const auto& menu : menus_) {
    const auto isItem = [&](const BarItem& item) { return item.id == menu.first; };
    if (std::none_of(items.begin(), items.end(), isItem)) gone.push_back(menu.first);
  }
  for (const auto item : gone) cancel(item);  // its owner may live on
}

// What an owner opens for an entry may come to the front by the time of its choice.
bool ItemMenus::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
      event->type() == QEvent::KeyPress) {
    time_ = static_cast<quint32>(static_cast<QInputEvent*>(event)->timestamp());
  }
  return false;
}

// Only while a menu is open: the signal would wake this process up at other times.
void ItemMenus::listen(bool on) {
  qApp->removeEventFilter(this);
  if (on) qApp->installEventFilter(this);
  auto bus = QDBusConnection::sessionBus();
  const auto change = on ? qOverload<const QString&, const QString&, const QString&, const QString&,
                                     QObject*, const char*>(&QDBusConnection::connect)
                         : qOverload<const QString&, const QString&, const QString&, const QString&,
                                     QObject*, const char*>(&QDBusConnection::disconnect);
  (bus.*change)({}, barservice::path, barservice::interface, QStringLiteral("ItemsChanged"), this,
                SIGNAL(itemsChanged()));
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
