#pragma once

#include "core/ports/accessibility.h"
#include "core/ports/application.h"
#include "core/ports/collation.h"
#include "core/ports/defaults_store.h"
#include "core/ports/event_monitors.h"
#include "core/ports/login_item.h"
#include "core/ports/main_loop.h"
#include "core/ports/menus.h"
#include "core/ports/panel_window.h"
#include "core/ports/picture_files.h"
#include "core/ports/pointer_events.h"
#include "core/ports/screens.h"
#include "core/ports/settings_window.h"
#include "core/ports/status_bar.h"
#include "core/ports/system_settings.h"
#include "core/ports/window_capture.h"
#include "core/ports/wording.h"
#include "core/ports/workspace.h"

namespace tarnwick {

// The services of the desktop that the product is built on, made by the composition root and
// outliving everything that uses them.
struct Desktop {
  MainLoop& loop;
  Accessibility& accessibility;
  PointerEvents& pointer;
  Workspace& workspace;
  StatusBar& statusBar;
  Screens& screens;
  DefaultsStore& defaults;
  Application& application;
  WindowCapture& windowCapture;
  PictureFiles& pictureFiles;
  PanelWindows& panelWindows;
  EventMonitors& eventMonitors;
  Menus& menus;
  SettingsWindows& settingsWindows;
  SystemSettings& systemSettings;
  LoginItem& loginItem;
  Collation& collation;
  Wording wording = {};
};

}  // namespace tarnwick
