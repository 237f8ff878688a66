#pragma once

#include <QDBusConnection>
#include <QImage>
#include <QPointF>
#include <QProcessEnvironment>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "harness/program.h"

namespace tarnwick::test {

// A desktop of a test's own: an X server on a free display, a window manager, a session bus that
// starts no services but its own, and empty home, configuration, state and runtime folders.
// Everything that was started on it ends with it.
class PrivateDesktop {
 public:
  explicit PrivateDesktop(QSize screen = {1280, 800});  // pixels
  ~PrivateDesktop();
  PrivateDesktop(const PrivateDesktop&) = delete;
  PrivateDesktop& operator=(const PrivateDesktop&) = delete;

  // Empty when everything asked for is running, else what is missing.
  const QString& failure() const { return failure_; }

  // Starts a program: one of this build by its name, else the first of that name on the path.
  Program& start(const QString& name, const QStringList& arguments = {});
  // What programs started from now on see, and see no longer.
  void setVariable(const QString& name, const QString& value);
  void unsetVariable(const QString& name);

  // This process's own connection to the desktop's bus.
  const QDBusConnection& bus() const { return *bus_; }
  QString busAddress() const;
  // A further connection, for a test that plays several programs.
  std::unique_ptr<QDBusConnection> connect() const;
  // Process that owns a name; 0 when nobody does.
  qint64 ownerOf(const QString& name) const;

  QString display() const { return display_; }
  QString folder(const QString& name) const;  // "home", "config", "data", "state" or "runtime"

  // Path of a program that start() would run.
  static QString pathOf(const QString& name);

  // Lets an executable use capabilities of the bar; empty takes them away.
  void grant(const QString& executable, const std::vector<std::string>& capabilities);
  void writeDefaults(const nlohmann::json& defaults);
  nlohmann::json readDefaults() const;  // empty while there is no file
  nlohmann::json readJson(const QString& path) const;

  // Asks the running utility for one of its actions: "toggle-panel", "reveal", and of an
  // application "hide" and "release". False when it does not answer.
  bool activateAction(const QString& name, const QString& application = {}) const;

  // Where a shown window of that title lies without its border, in pixels; empty while there is
  // none.
  QRect windowFrame(const QString& title);
  // Moves the pointer there and presses a button, as a hand would.
  void click(QPointF at, int button = 1);

  // The screen as it is now; null without an X server.
  QImage screenshot() const;

  // What every program printed, for a failed test's report.
  QString logs() const;

 private:
  void startServer(const QSize& screen);
  void startBus();
  void startWindowManager();
  Program& run(const QString& file, const QStringList& arguments);
  void endStrays() const;

  QTemporaryDir root_;
  QString marker_;
  QString failure_;
  QString display_;
  QProcessEnvironment environment_;
  std::unique_ptr<QDBusConnection> bus_;
  std::vector<std::unique_ptr<Program>> programs_;  // ended in reverse order
  mutable int connections_ = 0;
};

}  // namespace tarnwick::test
