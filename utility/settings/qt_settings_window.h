#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <utility>

#include "core/ports/settings_window.h"
#include "utility/settings/settings_form.h"

namespace tarnwick {

// Settings windows as top-level windows of the toolkit.
class QtSettingsWindows : public SettingsWindows {
 public:
  struct Effects {
    // Makes the window manager bring a window to the present desktop, put it in front and activate
    // it, whatever has the focus.
    std::function<void(WId)> bringToUser;
    // Whether the window manager has minimised it.
    std::function<bool(WId)> isMinimized;
    // Takes back that the window manager has maximised it, be it in one direction only. False when
    // it has not.
    std::function<bool(WId)> unmaximize;
  };
  explicit QtSettingsWindows(Effects effects, HotkeyRows hotkeyRows = {})
      : effects_(std::move(effects)), hotkeyRows_(std::move(hotkeyRows)) {}

  std::unique_ptr<SettingsWindow> makeSettingsWindow(std::shared_ptr<SettingsView> view) override;

 private:
  Effects effects_;
  HotkeyRows hotkeyRows_;
};

}  // namespace tarnwick
