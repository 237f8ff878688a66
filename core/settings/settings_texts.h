#pragma once

#include "core/ports/translatable.h"

// Fixed texts of the settings that a platform may word differently. Shown as SettingsView::text()
// has them, in the user's language.
namespace tarnwick::settingstexts {

inline constexpr const char* openSystemSettings =
    translatable("SettingsView", "Open System Settings…");
inline constexpr const char* captureNote =
    translatable("SettingsView",
                 "Menu bar icons need Screen Recording permission. Grant it in System Settings, "
                 "then restart Tarnwick.");
inline constexpr const char* systemIcons = translatable("SettingsView", "Apple menu bar icons");
inline constexpr const char* systemIconsNote = translatable(
    "SettingsView", "Wi-Fi, Bluetooth, battery and other Apple icons are managed by macOS.");

}  // namespace tarnwick::settingstexts
