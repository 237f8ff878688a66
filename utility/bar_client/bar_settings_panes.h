#pragma once

#include "core/ports/system_settings.h"
#include "utility/bar_client/bar_connection.h"

namespace tarnwick {

// The windows in which the bar is set up: who may use others' items, and the bar itself.
class BarSettingsPanes : public SystemSettings {
 public:
  explicit BarSettingsPanes(BarConnection& bar) : bar_(bar) {}
  void open(SettingsPane pane) override;

 private:
  BarConnection& bar_;
};

}  // namespace tarnwick
