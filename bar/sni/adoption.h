#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>

#include "bar/sni/item_address.h"

namespace tarnwick::bar {

// Looks once through the bus for items whose owners do not register again with a new watcher: asks
// each connection, one after the other, what it has at the usual paths. Deletes itself at the end.
class Adoption : public QObject {
  Q_OBJECT

 public:
  // Connections that `isKnown` names are left alone.
  explicit Adoption(std::function<bool(const QString& owner)> isKnown, QObject* parent = nullptr);

 signals:
  void found(const tarnwick::bar::ItemAddress& address);

 private:
  void next();
  void introspect(const ItemAddress& address);
  void take(const ItemAddress& address, const QString& xml);

  const std::function<bool(const QString&)> isKnown_;
  QStringList owners_;         // still to be asked
  QList<ItemAddress> places_;  // of the present one, still to be asked
};

}  // namespace tarnwick::bar
