#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>

#include "core/ports/system_shortcuts.h"
#include "utility/desktop_shortcuts/combination.h"
#include "utility/x11/key_grabs.h"

namespace tarnwick::shortcuts {

// What the running desktop binds, and whether anybody else has grabbed a combination. The
// configuration is read in the background: when it is asked for, so that the next answer has it,
// and from then on when its files change.
class DesktopShortcuts : public QObject, public SystemShortcuts {
 public:
  explicit DesktopShortcuts(x11::KeyGrabs& grabs);
  ~DesktopShortcuts() override;

  std::vector<TakenShortcut> taken() override;
  // Also asks the X server by a trial grab, and waits for its answer.
  bool isTaken(const TakenShortcut& shortcut) override;

 private:
  void read();

  x11::KeyGrabs& grabs_;
  Combinations combinations_;
  QFileSystemWatcher watcher_;
  bool reading_ = false;
  bool again_ = false;  // a file changed while it was read
  std::atomic<bool> stopped_ = false;
  QThreadPool reader_;
};

}  // namespace tarnwick::shortcuts
