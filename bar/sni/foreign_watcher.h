#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>

#include "bar/sni/item_address.h"

namespace tarnwick::bar {

// Being a host of a watcher of another process: tells it so and follows its list of items.
class ForeignWatcher : public QObject {
  Q_OBJECT

 public:
  // `owner` is the unique name of the watcher's process.
  explicit ForeignWatcher(QString owner, QObject* parent = nullptr);
  ~ForeignWatcher() override;

 signals:
  void itemRegistered(const tarnwick::bar::ItemAddress& address);
  void itemUnregistered(const tarnwick::bar::ItemAddress& address);

 private slots:
  void onRegistered(const QDBusMessage& signal);
  void onUnregistered(const QDBusMessage& signal);

 private:
  void subscribe(bool on);
  void readList();

  const QString owner_;
  bool reading_ = false;
  bool dirty_ = false;
};

}  // namespace tarnwick::bar
