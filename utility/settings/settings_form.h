#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "core/settings/settings_view.h"
#include "utility/settings/form_controls.h"
#include "utility/settings/form_section.h"
#include "utility/settings/hidden_apps_section.h"

namespace tarnwick {

// One row of the section "Hotkeys": a title and the control that records a shortcut.
struct HotkeyRow {
  QString title;
  QWidget* recorder = nullptr;
};
// Makes the rows for a form; none leave the section out.
using HotkeyRows = std::function<std::vector<HotkeyRow>()>;

// The content of the settings window: every section from top to bottom, showing the view's state
// and handing on what the user does.
class SettingsForm : public QWidget {
  Q_OBJECT

 public:
  SettingsForm(std::shared_ptr<SettingsView> view, const HotkeyRows& hotkeyRows);

  // Shows the present state.
  void sync();
  // Ends the program, after taking what is being typed.
  void quit();

 private:
  QString said(const char* fixed) const;
  FormSection* addSection(const QString& header);
  FormButton* addWarning();
  void addPanelSection();
  void addSystemIconsSection();
  void addHotkeysSection(const HotkeyRows& rows);
  void addClosingSection();

  const std::shared_ptr<SettingsView> view_;
  FormSection* warning_ = nullptr;
  HiddenAppsSection* hiddenApps_ = nullptr;
  NumberField* columns_ = nullptr;
  Stepper* stepper_ = nullptr;
  Picker* iconStyle_ = nullptr;
  Picker* handleStyle_ = nullptr;
  QWidget* captureNote_ = nullptr;
  QWidget* captureButton_ = nullptr;
  Switch* launchAtLogin_ = nullptr;
};

}  // namespace tarnwick
