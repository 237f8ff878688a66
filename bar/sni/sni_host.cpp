#include "bar/sni/sni_host.h"

#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <utility>

#include "bar/sni/adoption.h"
#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

using namespace std::chrono_literals;

constexpr auto busTimeout = 10s;
constexpr auto adoptionDelay = 3s;  // those that register again by themselves have done so
constexpr std::size_t maximumItemsOfOwner = 1'000;
constexpr std::ptrdiff_t maximumFromStrangers = 32;  // of one owner, told by others

}  // namespace

SniHost::SniHost(Board& board, desktop::IdentityResolver& identities, QObject* parent)
    : QObject(parent),
      board_(board),
      identities_(identities),
      watcher_([this](const ItemAddress& address, const QString& sender) {
        // The sender surely lives; any other name has to be asked for.
        address.service == sender ? add(address, sender, Source::trusted)
                                  : resolve(address, sender);
      }) {
  names_.setConnection(QDBusConnection::sessionBus());
  names_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  connect(&names_, &QDBusServiceWatcher::serviceOwnerChanged, this, &SniHost::onNameOwnerChanged);
}

SniHost::~SniHost() {
  watcher_.setServing(false);  // the items have not gone
  for (auto& [name, owner] : owners_) {
    for (Entry& entry : owner.entries) drop(entry);
  }
}

void SniHost::start() {
  if (!watcher_.exportObject()) {
    std::fprintf(stderr, "tarnwick-bar: status items cannot be taken in on the session bus\n");
  }
  requestName();
  QTimer::singleShot(adoptionDelay, Qt::VeryCoarseTimer, this, &SniHost::adopt);
}

// In the queue behind another watcher, so that this one follows it without a gap.
void SniHost::requestName() {
  QDBusConnection::sessionBus().connect(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
      {Watcher::serviceName()}, QString(), this,
      SLOT(onWatcherOwnerChanged(QString, QString, QString)));
  callBus(busDaemonCall(QStringLiteral("RequestName"), {Watcher::serviceName(), 0U}), busTimeout,
          this, [](const QDBusMessage&) {});
  callBus(busDaemonCall(QStringLiteral("GetNameOwner"), {Watcher::serviceName()}), busTimeout, this,
          [this](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ReplyMessage) {
              onWatcherOwner(reply.arguments().value(0).toString());
            }
          });
}

void SniHost::onWatcherOwnerChanged(const QString& name, const QString& before,
                                    const QString& now) {
  Q_UNUSED(name)
  Q_UNUSED(before)
  onWatcherOwner(now);
}

// Known items stay whoever is the watcher.
void SniHost::onWatcherOwner(const QString& owner) {
  if (std::exchange(watcherOwner_, owner) == owner) return;
  foreign_.reset();
  const bool own = owner == QDBusConnection::sessionBus().baseService();
  watcher_.setServing(own);
  if (own || owner.isEmpty()) return;
  foreign_ = std::make_unique<ForeignWatcher>(owner);
  connect(foreign_.get(), &ForeignWatcher::itemRegistered, this,
          [this](const ItemAddress& address) { resolve(address, {}); });
  connect(foreign_.get(), &ForeignWatcher::itemUnregistered, this, &SniHost::check);
}

void SniHost::adopt() {
  auto* const adoption =
      new Adoption([this](const QString& owner) { return owners_.contains(owner); }, this);
  connect(adoption, &Adoption::found, this,
          [this](const ItemAddress& address) { add(address, address.service, Source::trusted); });
}

void SniHost::resolve(const ItemAddress& address, const QString& sender) {
  callBus(busDaemonCall(QStringLiteral("GetNameOwner"), {address.service}), busTimeout, this,
          [this, address, sender](const QDBusMessage& reply) {
            if (reply.type() != QDBusMessage::ReplyMessage) return;
            const QString owner = reply.arguments().value(0).toString();
            const bool trusted = sender.isEmpty() || sender == owner;
            add(address, owner, trusted ? Source::trusted : Source::stranger);
          });
}

void SniHost::add(const ItemAddress& published, const QString& owner, Source source) {
  if (owner.isEmpty() || owner == QDBusConnection::sessionBus().baseService()) return;
  const auto [place, isNew] = owners_.try_emplace(owner);
  std::vector<Entry>& entries = place->second.entries;
  const ItemAddress address{owner, published.path};
  if (Entry* const known = find(address)) {
    if (source == Source::trusted) known->source = source;
    known->item->refresh();  // registering again may mean "I have changed"
    return;
  }
  if (!hasRoom(entries, source)) return;
  // Its earlier items may have gone without a word.
  if (entries.size() == 1) entries.front().item->refresh();

  Entry entry;
  entry.published = published;
  entry.source = source;
  entry.fresh = std::make_unique<SniItem>(address, shared_);
  entry.item = entry.fresh.get();
  connect(entry.item, &SniItem::ready, this, [this, address] { onReady(address); });
  // Queued: the item is still at work when it tells.
  connect(
      entry.item, &SniItem::vanished, this, [this, address] { remove(address); },
      Qt::QueuedConnection);
  entry.item->start();
  if (place->second.pid) setProcess(place->second, *entry.item);
  entries.push_back(std::move(entry));
  watcher_.addItem(published.toString());
  if (published.service != owner) names_.addWatchedService(published.service);
  if (!isNew) return;
  names_.addWatchedService(owner);
  askProcess(owner);
}

// An owner's own item displaces one that others have told of and that has not shown itself.
bool SniHost::hasRoom(std::vector<Entry>& entries, Source source) {
  if (source == Source::stranger) {
    const auto told = std::count_if(entries.begin(), entries.end(), [](const Entry& entry) {
      return entry.source == Source::stranger;
    });
    if (told >= maximumFromStrangers) return false;
  }
  if (entries.size() < maximumItemsOfOwner) return true;
  if (source == Source::stranger) return false;
  const auto idle = std::find_if(entries.begin(), entries.end(), [](const Entry& entry) {
    return entry.source == Source::stranger && entry.fresh;
  });
  if (idle == entries.end()) return false;
  drop(*idle);
  entries.erase(idle);
  return true;
}

void SniHost::askProcess(const QString& owner) {
  callBus(busDaemonCall(QStringLiteral("GetConnectionUnixProcessID"), {owner}), busTimeout, this,
          [this, owner](const QDBusMessage& reply) {
            const auto found = owners_.find(owner);
            if (found == owners_.end()) return;
            if (reply.type() != QDBusMessage::ReplyMessage) {
              removeOwner(owner);
              return;
            }
            Owner& process = found->second;
            process.pid = static_cast<qint32>(reply.arguments().value(0).toUInt());
            process.identity =
                identities_.identify(*process.pid).value_or(desktop::ApplicationIdentity{});
            for (Entry& entry : process.entries) setProcess(process, *entry.item);
          });
}

void SniHost::setProcess(Owner& owner, SniItem& item) const {
  item.setProcess(*owner.pid, QString::fromStdString(owner.identity.bundleId),
                  QString::fromStdString(owner.identity.name),
                  QString::fromStdString(owner.identity.icon));
}

void SniHost::onReady(const ItemAddress& address) {
  Entry* const entry = find(address);
  if (entry != nullptr && entry->fresh) entry->id = board_.add(std::move(entry->fresh));
}

SniHost::Entry* SniHost::find(const ItemAddress& address) {
  const auto owner = owners_.find(address.service);
  if (owner == owners_.end()) return nullptr;
  for (Entry& entry : owner->second.entries) {
    if (entry.item->address() == address) return &entry;
  }
  return nullptr;
}

void SniHost::drop(Entry& entry) {
  watcher_.removeItem(entry.published.toString());
  if (entry.published.service != entry.item->address().service && !isPublishedElsewhere(entry)) {
    names_.removeWatchedService(entry.published.service);
  }
  if (entry.id) {
    board_.remove(*entry.id);
  } else if (entry.fresh) {
    entry.fresh.release()->deleteLater();
  }
}

// Whether another item is known under the same well-known name.
bool SniHost::isPublishedElsewhere(const Entry& entry) const {
  return std::any_of(owners_.begin(), owners_.end(), [&entry](const auto& owner) {
    return std::any_of(
        owner.second.entries.begin(), owner.second.entries.end(), [&entry](const Entry& other) {
          return &other != &entry && other.published.service == entry.published.service;
        });
  });
}

void SniHost::remove(const ItemAddress& address) {
  Entry* const entry = find(address);
  if (entry == nullptr) return;
  drop(*entry);
  std::vector<Entry>& entries = owners_[address.service].entries;
  entries.erase(entries.begin() + (entry - entries.data()));
  if (entries.empty()) removeOwner(address.service);
}

// Another watcher says that an item has gone, or is itself about to go.
void SniHost::check(const ItemAddress& published) {
  for (auto& [name, owner] : owners_) {
    for (Entry& entry : owner.entries) {
      const bool same = entry.published == published || entry.item->address() == published;
      if (same) entry.item->refresh();
    }
  }
}

void SniHost::removeOwner(const QString& owner) {
  auto node = owners_.extract(owner);
  names_.removeWatchedService(owner);
  if (node.empty()) return;
  for (Entry& entry : node.mapped().entries) drop(entry);
}

void SniHost::onNameOwnerChanged(const QString& name, const QString& before, const QString& now) {
  if (isUniqueBusName(name)) {
    if (now.isEmpty()) removeOwner(name);
    return;
  }
  // A well-known name has changed hands: its items are those of its new owner.
  std::vector<ItemAddress> moved;
  if (const auto owner = owners_.find(before); owner != owners_.end()) {
    for (const Entry& entry : owner->second.entries) {
      if (entry.published.service == name) moved.push_back(entry.published);
    }
  }
  for (const ItemAddress& published : moved) {
    remove({before, published.path});
    if (!now.isEmpty()) add(published, now, Source::trusted);
  }
}

}  // namespace tarnwick::bar
