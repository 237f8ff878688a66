#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

// The keys of a desktop file's main group that tell an application, with escapes resolved.
struct DesktopFile {
  std::string name;
  std::string icon;
  std::string exec;
  std::string tryExec;
  std::string windowClass;
  std::string onlyShowIn;  // desktops, each followed by ";"
  std::string notShowIn;
  bool application = false;  // Type=Application
  bool hidden = false;
  bool noDisplay = false;
  bool autostart = true;  // X-GNOME-Autostart-enabled
};

// Absent when there is no main group. `locale` as in LC_MESSAGES: lang_COUNTRY.ENCODING@MODIFIER.
std::optional<DesktopFile> parseDesktopFile(std::string_view text, std::string_view locale);

// The locale of messages by the environment; empty for none.
std::string messagesLocale();

}  // namespace tarnwick::desktop
