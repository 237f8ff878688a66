#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <memory>
#include <string>

#include "core/app/app_delegate.h"
#include "core/ports/desktop.h"

namespace tarnwick {

// The process on the session bus: the name org.tarnwick.Tarnwick, which only one process owns, and
// the object /org/tarnwick/Tarnwick with org.freedesktop.Application. Actions: "toggle-panel" and
// "reveal" (for 15 seconds), and with one string each, a bundle identifier, "hide" and "release".
// Activate is another launch of the running application, except when the bus has started this
// process to deliver it.
class ApplicationService : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  explicit ApplicationService(const QDBusConnection& bus);
  // Gives the name back.
  ~ApplicationService() override;

  // Takes the name. False when another process has it or the bus does not give it.
  bool claim();
  // Tells the process that has the name to come forward; waits for its answer for 2 seconds at
  // most. False when it has gone meanwhile or is about to.
  bool activateOther();

  // What calls are handed to. Those that arrive earlier do nothing.
  void serve(Desktop& desktop, std::weak_ptr<AppDelegate> delegate);

 public slots:
  void Activate(const QVariantMap& platformData);
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& action, const QVariantList& parameters,
                      const QVariantMap& platformData);

 private slots:
  void onLaunched() { launched_ = true; }

 private:
  QDBusConnection bus_;
  Desktop* desktop_ = nullptr;
  std::weak_ptr<AppDelegate> delegate_;
  bool launched_ = false;  // all that was sent before the name was ours has been delivered
};

}  // namespace tarnwick
