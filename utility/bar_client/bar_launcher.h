#pragma once

#include <QDBusConnection>
#include <QObject>
#include <optional>

#include "common/files/file.h"
#include "core/ports/main_loop.h"

namespace tarnwick {

// Sees to it that a bar runs: by D-Bus activation where it is installed so, else by starting the
// program tarnwick-bar beside our own. Waits longer from failure to failure; once there is nothing
// to start, waits for a bar that somebody else starts.
class BarLauncher : public QObject {
  Q_OBJECT

 public:
  BarLauncher(MainLoop& loop, const QDBusConnection& bus);

  void barMissing();
  void barPresent();

 private:
  void attempt();
  void attemptLater();
  bool startSibling();
  bool isStarting() const;

  MainLoop& loop_;
  QDBusConnection bus_;
  std::optional<Duration> presentSince_;
  Duration delay_{};  // before the next attempt
  Registration timer_;
  desktop::UniqueFd started_;  // the process started last
};

}  // namespace tarnwick
