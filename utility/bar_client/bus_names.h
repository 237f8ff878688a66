#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarnwick {

// The well-known names on a bus by the processes that own them, as the bus daemon tells. Follows
// them as they come and go; answers from memory.
class BusNames : public QObject {
  Q_OBJECT

 public:
  // `changed` is called when of() may answer otherwise.
  BusNames(const QDBusConnection& bus, std::function<void()> changed);

  std::vector<std::string> of(std::int32_t pid) const;

 private slots:
  void onOwnerChanged(const QString& name, const QString& before, const QString& now);

 private:
  void ask(const QString& name);

  QDBusConnection bus_;
  const std::function<void()> changed_;
  std::map<QString, std::int32_t> owners_;
  // Names whose owner the daemon is being asked for; true for one that has changed hands since.
  std::map<QString, bool> asked_;
};

}  // namespace tarnwick
