#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QPointF>
#include <QString>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "tests/desktop/harness/bar_proxy.h"

namespace tarnwick::test {

// A bar that a test plays itself, to see what the utility asks of a bar and to answer as no real
// bar would. Foreign items stand where the test puts them; the utility's own are laid out to the
// left of x = 800.
class ScriptedBar : public QDBusVirtualObject {
 public:
  struct PointerEvent {
    uint kind = 0;  // 1 press, 2 drag, 3 release
    QPointF at;
    uint modifiers = 0;
  };

  // Takes the bar's name on a connection of its own.
  explicit ScriptedBar(std::unique_ptr<QDBusConnection> bus);
  ~ScriptedBar() override;

  BarItems foreign;
  std::set<QString> granted{"accessibility"};
  std::set<QString> unanswered;  // methods
  // Called with every event that was posted, after it was put into `events`.
  std::function<void(const PointerEvent&)> onPointerEvent;

  std::vector<PointerEvent> events;
  std::vector<QString> calls;  // names of all methods called
  struct Native {
    quint64 id = 0;
    qint32 pid = 0;
    QString autosaveName;
    std::vector<double> lengths;  // one after the other
  };
  std::vector<Native> natives;

  const Native* native(const QString& autosaveName) const;
  int drags() const;  // complete ones: press to release
  void announceApplication(qint32 pid);

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
  QString introspect(const QString& path) const override;

 private:
  QVariantList answer(const QDBusMessage& message);
  QList<BarItem> items() const;

  std::unique_ptr<QDBusConnection> bus_;
};

}  // namespace tarnwick::test
