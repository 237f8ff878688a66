#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "bar/board/board.h"
#include "bar/sni/foreign_watcher.h"
#include "bar/sni/item_address.h"
#include "bar/sni/sni_item.h"
#include "bar/sni/watcher.h"
#include "common/identity/identity.h"

namespace tarnwick::bar {

// Brings the StatusNotifierItems of the session onto the board. Is the session's watcher, or a host
// of whatever other watcher there is, and takes over when that one goes.
class SniHost : public QObject {
  Q_OBJECT

 public:
  // The board and the resolver must outlive it.
  SniHost(Board& board, desktop::IdentityResolver& identities, QObject* parent = nullptr);
  ~SniHost() override;

  // To be called as early as possible: some applications look for a watcher once only.
  void start();

 private slots:
  void onWatcherOwnerChanged(const QString& name, const QString& before, const QString& now);

 private:
  // Who says that an item is there: its owner or the session's watcher, or anybody else.
  enum class Source : std::uint8_t { trusted, stranger };
  // One item. Before it is ready it is its own owner's affair; then the board has it.
  struct Entry {
    ItemAddress published;           // as registered: its service may be a well-known name
    std::unique_ptr<SniItem> fresh;  // not on the board yet
    SniItem* item = nullptr;
    std::optional<ItemId> id;  // on the board
    Source source = Source::trusted;
  };
  // One connection that has items.
  struct Owner {
    std::optional<qint32> pid;
    desktop::ApplicationIdentity identity;
    std::vector<Entry> entries;
  };
  using Owners = std::map<QString, Owner>;

  void requestName();
  void onWatcherOwner(const QString& owner);
  void adopt();

  // `sender` is who asks; empty for a watcher's word.
  void resolve(const ItemAddress& address, const QString& sender);
  void add(const ItemAddress& published, const QString& owner, Source source);
  void askProcess(const QString& owner);
  void setProcess(Owner& owner, SniItem& item) const;
  void onReady(const ItemAddress& address);
  void remove(const ItemAddress& address);
  void check(const ItemAddress& published);
  void removeOwner(const QString& owner);
  void drop(Entry& entry);
  bool hasRoom(std::vector<Entry>& entries, Source source);
  bool isPublishedElsewhere(const Entry& entry) const;
  Entry* find(const ItemAddress& address);
  void onNameOwnerChanged(const QString& name, const QString& before, const QString& now);

  Board& board_;
  desktop::IdentityResolver& identities_;
  const std::shared_ptr<SniShared> shared_ = std::make_shared<SniShared>();
  Watcher watcher_;
  std::unique_ptr<ForeignWatcher> foreign_;
  QDBusServiceWatcher names_;
  Owners owners_;  // by unique name
  QString watcherOwner_;
};

}  // namespace tarnwick::bar
