#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <map>
#include <vector>

class QDBusPendingCallWatcher;

namespace tarnwick::bar {

// The connections that call the bar, each with its process. A name is asked about once and
// remembered until its connection goes.
class Callers : public QObject {
  Q_OBJECT

 public:
  explicit Callers(QDBusConnection bus, QObject* parent = nullptr);

  // Calls `then` with the process of the unique name: at once when it is known, else when the bus
  // has answered; with 0 when the bus cannot tell, or at once when too many calls of that name wait
  // already. Other calls of one name keep their order. Dropped when the connection has gone.
  void identify(const QString& name, std::function<void(qint32 pid)> then);

  std::vector<std::pair<QString, qint32>> known() const;

 signals:
  // A connection that had been asked about is gone.
  void gone(const QString& name);

 private slots:
  void ownerChanged(const QString& name, const QString& before, const QString& after);

 private:
  struct Caller {
    qint32 pid = 0;  // 0 until the bus has answered
    std::vector<std::function<void(qint32)>> waiting;
  };

  void answered(const QString& name, QDBusPendingCallWatcher* call);
  void drop(const QString& name);
  void watch(const QString& name, bool on);

  QDBusConnection bus_;
  std::map<QString, Caller> callers_;
};

}  // namespace tarnwick::bar
