#pragma once

#include "platform/accessibility.h"
#include "platform/application.h"
#include "platform/collation.h"
#include "platform/defaults_store.h"
#include "platform/event_monitors.h"
#include "platform/login_item.h"
#include "platform/main_loop.h"
#include "platform/menus.h"
#include "platform/panel_window.h"
#include "platform/picture_files.h"
#include "platform/pointer_events.h"
#include "platform/screens.h"
#include "platform/settings_window.h"
#include "platform/status_bar.h"
#include "platform/system_settings.h"
#include "platform/window_capture.h"
#include "platform/wording.h"
#include "platform/workspace.h"

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
