#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarnwick {

// The well-known names on a bus by the processes that own them, as the bus daemon tells. Answers
// from memory; does not follow the names, which would wake this process for every client of the
// bus.
class BusNames : public QObject {
 public:
  // `changed` is called when of() may answer otherwise.
  BusNames(const QDBusConnection& bus, std::function<void()> changed);

  // Asks the daemon anew; the answer comes later.
  void refresh();

  std::vector<std::string> of(std::int32_t pid) const;

 private:
  void listNames();
  void ask(const QString& name);
  void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> answered);

  QDBusConnection bus_;
  const std::function<void()> changed_;
  std::map<QString, std::int32_t> owners_;
  std::map<QString, std::int32_t> found_;  // by the round of questions under way
  int open_ = 0;                           // its questions without an answer
  bool again_ = false;                     // another is wanted
};

}  // namespace tarnwick
