#pragma once

#include <cstdint>

namespace tarnwick {

enum class SettingsPane : std::uint8_t {
  accessibilityPrivacy,  // who may see and press other applications' items
  screenCapturePrivacy,  // who may picture them
  menuBar,               // the bar itself
};

// The desktop's own settings.
class SystemSettings {
 public:
  virtual ~SystemSettings() = default;
  // Shows that pane to the user; nothing happens where there is none.
  virtual void open(SettingsPane pane) = 0;
};

}  // namespace tarnwick
