#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "common/base/callback_list.h"
#include "core/hiding/menu_bar_controller.h"
#include "core/menubar/menu_bar_scanner.h"
#include "core/ports/desktop.h"
#include "core/ports/task.h"
#include "core/prefs/preferences.h"
#include "core/settings/binding.h"
#include "core/settings/candidate_app.h"

namespace tarnwick {

// What the settings window shows and what its controls do. Every change is stored at once and told
// to the controller in the same step; what others store is shown as soon as it is told. Made by the
// application delegate, drawn by a SettingsWindow, which observes it.
class SettingsView : public std::enable_shared_from_this<SettingsView> {
 public:
  SettingsView(Desktop& desktop, std::shared_ptr<MenuBarController> controller);

  // State, in the order of the form.
  bool hasPermission() const { return hasPermission_; }  // as of the last rescan
  const std::vector<CandidateApp>& candidates() const { return candidates_; }
  const std::set<std::string>& hidden() const { return hidden_; }
  const std::map<std::string, std::string>& groupNames() const { return groupNames_; }
  int panelColumns() const { return panelColumns_; }
  PanelIconStyle iconStyle() const { return iconStyle_; }
  // Pictures of status items are asked for and may not be taken. Asked afresh at each call.
  bool showsCaptureNote() const;
  HandleIconStyle handleStyle() const { return handleStyle_; }
  bool launchAtLogin() const { return launchAtLogin_; }
  // "<short version> (<build>)", with "?" for what is unknown.
  std::string versionDescription() const;

  // One of the fixed texts as this platform words it, in English.
  const char* text(const char* fixed) const { return worded(desktop_.wording, fixed); }

  // Called after any of the state has changed.
  Registration onChanged(std::function<void()> callback) {
    return changed_.add(std::move(callback));
  }

  // The content has come into sight.
  void appear();
  // Reads the login item's state again; another program may have changed it.
  void refreshLaunchAtLogin();
  // Builds the list of applications anew from the bar and the store.
  void rescan();

  // Whether that application is hidden.
  Binding<bool> binding(const std::string& bundleId);
  // The text in that application's group field, as typed.
  Binding<std::string> groupBinding(const std::string& bundleId);

  // Any number; what is kept and shown is between 1 and 20.
  void setPanelColumns(int columns);
  void setIconStyle(PanelIconStyle style);
  void setHandleStyle(HandleIconStyle style);
  void setLaunchAtLogin(bool enabled);

  // Both also have the user asked.
  void openAccessibilitySettings();
  void openCaptureSettings();
  void openMenuBarSettings();
  void restart();
  void quit();

 private:
  static Task refreshPanelLater(MainLoop& loop, std::shared_ptr<MenuBarController> controller);

  void followStore();
  void readStore();
  void listCandidates();
  std::map<std::string, std::string> storedGroupNames() const;
  void setHidden(const std::string& bundleId, bool hidden);
  void setGroupName(const std::string& bundleId, const std::string& name);

  Desktop& desktop_;
  const std::shared_ptr<MenuBarController> controller_;
  const Preferences preferences_;
  const MenuBarScanner scanner_;
  CallbackList changed_;
  Registration captureAccess_;
  Registration storeObserver_;

  std::vector<CandidateApp> candidates_;
  std::set<std::string> hidden_;
  std::map<std::string, std::string> groupNames_;
  std::map<std::string, std::string> storedGroupNames_;  // as last seen, of hidden applications
  int panelColumns_;
  PanelIconStyle iconStyle_;
  HandleIconStyle handleStyle_;
  bool hasPermission_;
  bool launchAtLogin_;
};

}  // namespace tarnwick
