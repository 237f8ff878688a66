#include "utility/platform_texts.h"

#include "core/settings/settings_texts.h"

namespace tarnwick {

namespace {

// The windows that these speak of are the bar's "Privacy" and its question "Screen Capture". A
// permission counts at once, without a restart.
constexpr PlatformText texts[] = {
    {settingstexts::openSystemSettings, translatable("SettingsView", "Open Privacy Settings…")},
    {settingstexts::captureNote,
     translatable("SettingsView",
                  "Menu bar icons need Screen Capture permission. Grant it in the privacy "
                  "settings.")},
    {settingstexts::systemIcons, translatable("SettingsView", "The bar’s own parts")},
    {settingstexts::systemIconsNote,
     translatable("SettingsView",
                  "The clock and the application’s name belong to the bar and are set up there.")},
};

}  // namespace

Wording platformTexts() {
  return texts;
}

}  // namespace tarnwick
