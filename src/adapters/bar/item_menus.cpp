#include "adapters/bar/item_menus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QInputEvent>
#include <QScreen>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "adapters/bar/bar_protocol.h"

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

constexpr auto submenuPatience = 300ms;  // for the answers to all submenus
constexpr auto unwatchedLife = 5s;       // longer than a menu is waited for
constexpr auto emptyPatience = 800ms;    // for entries that come late
constexpr std::size_t mostAsked = 64;    // menus asked for in one opening

// Where an entry stands, as titles from the root on; empty when it is not there.
bool findPath(const MenuEntry& below, int id, QStringList& path) {
  for (const MenuEntry& child : below.children) {
    path.push_back(child.title());
    if (child.id == id || findPath(child, id, path)) return true;
    path.pop_back();
  }
  return false;
}

const MenuEntry* follow(const MenuEntry& root, const QStringList& path) {
  const MenuEntry* entry = &root;
  for (const QString& title : path) {
    const auto& children = entry->children;
    const auto next = std::find_if(children.begin(), children.end(), [&](const MenuEntry& child) {
      return !child.separator && child.title() == title;
    });
    if (next == children.end()) return nullptr;
    entry = &*next;
  }
  return entry;
}

// The id that the entry shown as `id` has now: its own while its title is the same, else that of
// the entry at the same titles. Absent when there is none any more.
std::optional<int> presentId(const MenuEntry& shown, const MenuEntry& present, int id) {
  QStringList before;
  QStringList now;
  if (!findPath(shown, id, before)) return id;
  if (findPath(present, id, now) && now.back() == before.back()) return id;
  const MenuEntry* const entry = follow(present, before);
  return entry ? std::optional(entry->id) : std::nullopt;
}

void closeFromTheInside(MenuClient& client, const std::vector<int>& menus) {
  for (auto id = menus.rbegin(); id != menus.rend(); ++id) client.close(*id);
}

// An item whose menu object is not there means its own answer to a click.
void activate(const BarItem& item, std::optional<QPointF> place) {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  QPoint pixels;
  if (screen && place) {
    pixels = screen->geometry().topLeft() + (*place * screen->devicePixelRatio()).toPoint();
  }
  auto call = QDBusMessage::createMethodCall(item.busName, item.objectPath,
                                             QStringLiteral("org.kde.StatusNotifierItem"),
                                             QStringLiteral("Activate"));
  call << pixels.x() << pixels.y();
  call.setAutoStartService(false);
  QDBusConnection::sessionBus().send(call);
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
  menu.owner = item.busName;
  owners_.addWatchedService(menu.owner);
  menu.client = std::make_unique<MenuClient>(item.busName, item.menuPath);
  menu.asked.push_back(0);
  MenuClient* const client = menu.client.get();
  connect(client, &MenuClient::layoutChanged, this,
          [this, id = item.id, client] { onLayout(id, client); });
  client->open(0, this, [this, item, place, client](MenuClient::Failure failure) {
    if (failure != MenuClient::Failure::absent || !find(item.id, client)) return;
    if (auto ended = end(item.id)) retire(std::move(ended->client));
    activate(item, place);
  });
  // Some owners always have a menu object and mean a click by it: theirs is empty.
  QTimer::singleShot(emptyPatience, client, [this, item, place, client] {
    const OpenMenu* const empty = find(item.id, client);
    if (!empty || !empty->ended.empty() || !client->root()) return;
    if (!shownEntries(client->root()->children).empty()) return;
    if (auto ended = end(item.id)) retire(std::move(ended->client));
    activate(item, place);
  });
  QTimer::singleShot(unwatchedLife, client, [this, id = item.id, client] {
    const OpenMenu* const unwatched = find(id, client);
    if (!unwatched || !unwatched->ended.empty()) return;
    if (auto ended = end(id)) retire(std::move(ended->client));
  });
}

// The owner has answered, perhaps once more: late or with other entries.
void ItemMenus::onLayout(std::uint64_t item, const MenuClient* client) {
  OpenMenu* const menu = find(item, client);
  if (!menu || !client->root()) return;
  if (menu->patience.isForever()) menu->patience.setRemainingTime(submenuPatience);
  fillSubmenus(item, *client->root(), 1);
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
    client->open(child.id, this, [this, item, client](MenuClient::Failure) {
      if (OpenMenu* const open = find(item, client)) --open->pending;
    });
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
  const MenuEntry* const root = menu->client->root();
  // Owners may number their entries anew at any time.
  const auto id = menu->shown && root ? presentId(*menu->shown, *root, entry) : entry;
  if (id) {
    menu->client->click(*id, menu->asked, time_);
  } else {
    closeFromTheInside(*menu->client, menu->asked);
  }
  retire(std::move(menu->client));
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
  owners_.removeWatchedService(node.mapped().owner);
  if (menus_.empty()) listen(false);
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

void ItemMenus::keepOnly(const std::vector<BarItem>& items) {
  std::vector<std::uint64_t> gone;
  for (const auto& menu : menus_) {
    const auto isItem = [&](const BarItem& item) { return item.id == menu.first; };
    if (std::none_of(items.begin(), items.end(), isItem)) gone.push_back(menu.first);
  }
  for (const auto item : gone) {
    if (auto ended = end(item)) retire(std::move(ended->client));
  }
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
