#include "utility/bar_client/bar_settings_panes.h"

namespace tarnwick {

void BarSettingsPanes::open(SettingsPane pane) {
  const bool ofTheBar = pane == SettingsPane::menuBar;
  bar_.send(QStringLiteral("ShowPane"),
            {ofTheBar ? QStringLiteral("menu-bar") : QStringLiteral("privacy")});
}

}  // namespace tarnwick
