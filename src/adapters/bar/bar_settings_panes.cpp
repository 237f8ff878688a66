#include "adapters/bar/bar_settings_panes.h"

namespace tarnwick {

void BarSettingsPanes::open(SettingsPane pane) {
  const bool privacy = pane == SettingsPane::accessibilityPrivacy;
  bar_.send(QStringLiteral("ShowPane"),
            {privacy ? QStringLiteral("privacy") : QStringLiteral("menu-bar")});
}

}  // namespace tarnwick
