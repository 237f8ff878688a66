#pragma once

#include <QDBusConnection>
#include <QFileSystemWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include "bar/access/access_control.h"
#include "bar/access/access_store.h"
#include "bar/access/callers.h"
#include "bar/board/board.h"
#include "bar/board/position_store.h"
#include "bar/service/menu_bar_service.h"
#include "bar/settings/bar_settings.h"
#include "bar/sni/sni_host.h"
#include "bar/window/bar_window.h"
#include "bar/window/clock.h"
#include "bar/x11/active_application.h"
#include "bar/x11/tray_manager.h"
#include "common/identity/identity.h"
#include "common/look/appearance.h"

namespace tarnwick::bar {

// The whole bar put together. Owned by main().
class BarApp : public QObject {
  Q_OBJECT

 public:
  explicit BarApp(QDBusConnection bus);
  ~BarApp() override;

  // To be called once, before the event loop. When the loop ends, foreign icons are given back and
  // the items' places are stored.
  void start();

 private:
  void putAway();
  void applySettings();
  void watchFiles();
  void watchFilesAgain();
  void showPane(const QString& pane, const QString& caller);

  QDBusConnection bus_;
  desktop::IdentityResolver identities_;
  BarSettings settings_;
  Board board_;
  PositionStore positions_;
  Callers callers_;
  AccessStore accessStore_;
  AccessControl access_;
  Appearance appearance_;
  Clock clock_;
  MenuBarService service_;
  SniHost sni_;
  BarWindow window_;
  x11::TrayManager tray_;
  x11::ActiveApplication activeApplication_;
  QFileSystemWatcher files_;
  QTimer rereadTimer_;
  QPointer<QWidget> privacyWindow_;
  QPointer<QWidget> menuBarPane_;
};

}  // namespace tarnwick::bar
