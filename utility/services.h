#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSocketNotifier>
#include <string>

#include "common/identity/identity.h"
#include "core/ports/desktop.h"
#include "core/ports/notification_center.h"
#include "core/shortcuts/keyboard_shortcuts.h"
#include "utility/bar_client/bar_accessibility.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_pointer_events.h"
#include "utility/bar_client/bar_settings_panes.h"
#include "utility/bar_client/bar_snapshots.h"
#include "utility/bar_client/bar_status_bar.h"
#include "utility/bar_client/bar_window_capture.h"
#include "utility/bar_client/bar_workspace.h"
#include "utility/bar_client/bus_names.h"
#include "utility/desktop_shortcuts/desktop_shortcuts.h"
#include "utility/loop/qt_application.h"
#include "utility/loop/qt_main_loop.h"
#include "utility/loop/session_locks.h"
#include "utility/menus/menu_tracking.h"
#include "utility/menus/qt_menus.h"
#include "utility/panel/qt_panel_window.h"
#include "utility/panel/qt_screens.h"
#include "utility/pictures/png_files.h"
#include "utility/platform_texts.h"
#include "utility/session/autostart_entry.h"
#include "utility/session/defaults_file.h"
#include "utility/settings/qt_collation.h"
#include "utility/settings/qt_settings_window.h"
#include "utility/settings/recorder_widget.h"
#include "utility/x11/client_windows.h"
#include "utility/x11/key_grabs.h"
#include "utility/x11/keyboard_changes.h"
#include "utility/x11/keyboard_grab.h"
#include "utility/x11/raw_presses.h"
#include "utility/x11/window_effects.h"
#include "utility/x11/xkb_layout.h"

namespace tarnwick {

// The adapters of this desktop, wired together. Needs a QApplication and a session bus.
class Services {
 public:
  // `program` is the path that this process was started by.
  Services(const QDBusConnection& bus, std::string program);
  // Ends every task, so that nothing uses a service that is gone.
  ~Services();

  Desktop& desktop() { return desktop_; }
  const QtApplication& application() const { return application_; }

 private:
  bool isOurItem(QPoint rootPixels);
  Recording recording();

  QtMainLoop loop_;
  QtApplication application_;
  QtScreens screens_;
  desktop::DefaultsFile defaults_;
  QSocketNotifier defaultsNotifier_{defaults_.descriptor(), QSocketNotifier::Read};
  BusNames busNames_;
  x11::ClientWindows clientWindows_{[this] { identities_.sourcesChanged(); }};
  desktop::IdentityResolver identities_{
      [this](std::int32_t pid) { return clientWindows_.hints(pid); }, "/proc",
      [this](std::int32_t pid) { return busNames_.of(pid); }};
  BarConnection bar_;
  BarSnapshots snapshots_{bar_};
  BarAccessibility accessibility_{bar_, snapshots_};
  BarPointerEvents pointer_{bar_};
  BarWorkspace workspace_;
  BarStatusBar statusBar_{bar_, snapshots_};
  BarWindowCapture windowCapture_{loop_, bar_};
  PngFiles pictures_;
  QtPanelWindows panelWindows_{{x11::isComposited, x11::cutWindow}};
  x11::RawPresses presses_;
  SessionLocks locks_;
  QtMenus menus_{loop_, presses_, [this](const AXElement& entry, std::function<void()> gone) {
                   return accessibility_.watchMenu(entry, std::move(gone));
                 }};
  QtSettingsWindows settingsWindows_{{x11::bringToUser, x11::isMinimized, x11::unmaximize},
                                     [this] { return makeHotkeyRows(recording()); }};
  BarSettingsPanes settingsPanes_{bar_};
  desktop::AutostartEntry loginItem_;
  QtCollation collation_;
  Desktop desktop_{loop_,         accessibility_, pointer_,       workspace_,       statusBar_,
                   screens_,      defaults_,      application_,   windowCapture_,   pictures_,
                   panelWindows_, presses_,       menus_,         settingsWindows_, settingsPanes_,
                   loginItem_,    collation_,     platformTexts()};
  NotificationCenter notifications_;
  MenuTracking menuTracking_{notifications_};
  x11::KeyboardChanges keyboardChanges_;
  x11::KeyGrabs hotKeys_{keyboardChanges_};
  shortcuts::DesktopShortcuts systemShortcuts_{hotKeys_};
  x11::XkbLayout keyboardLayout_{keyboardChanges_};
  Registration shortcuts_ = KeyboardShortcuts::use(
      {loop_, defaults_, hotKeys_, keyboardLayout_, notifications_, &systemShortcuts_,
       [](const char* text) {
         return QCoreApplication::translate("KeyboardShortcuts", text).toStdString();
       }});
};

}  // namespace tarnwick
