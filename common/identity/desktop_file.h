#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::desktop {

// The keys of a desktop file that tell an application, with escapes resolved.
struct DesktopFile {
  std::string name;
  std::string icon;
  std::string exec;
  std::string tryExec;
  std::string windowClass;
  std::string onlyShowIn;  // desktops, each followed by ";"
  std::string notShowIn;
  std::vector<std::string> actionExecs;  // Exec of the desktop actions, at most 32
  bool application = false;              // Type=Application
  bool hidden = false;
  bool noDisplay = false;
  bool autostart = true;  // X-GNOME-Autostart-enabled
};

// Absent when there is no main group. `locale` as in LC_MESSAGES: lang_COUNTRY.ENCODING@MODIFIER.
std::optional<DesktopFile> parseDesktopFile(std::string_view text, std::string_view locale);

// Whether menus of the present desktop ($XDG_CURRENT_DESKTOP) may list it: OnlyShowIn and
// NotShowIn.
bool suitsThisDesktop(const DesktopFile& file);

// The locale of messages by the environment; empty for none.
std::string messagesLocale();

}  // namespace tarnwick::desktop
