#pragma once

#include <memory>
#include <vector>

#include "core/settings/settings_view.h"
#include "utility/settings/form_controls.h"
#include "utility/settings/form_section.h"

namespace tarnwick {

// The list of applications with a switch each and, for hidden ones, the name of a group.
class HiddenAppsSection : public FormSection {
  Q_OBJECT

 public:
  // Comes after `before` in the order of the keyboard focus.
  HiddenAppsSection(std::shared_ptr<SettingsView> view, QWidget* before, QWidget* parent);

  void sync();

 private:
  struct Row {
    CandidateApp app;
    Switch* hidden;
    Field* group = nullptr;  // made when first shown
  };

  void rebuild();
  Field* makeGroupField(const Row& row);

  const std::shared_ptr<SettingsView> view_;
  QWidget* const before_;
  QWidget* empty_;
  FormButton* rescan_;
  std::vector<Row> rows_;
};

}  // namespace tarnwick
