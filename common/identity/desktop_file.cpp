#include "common/identity/desktop_file.h"

#include <cstdlib>

namespace tarnwick::desktop {

namespace {

constexpr std::size_t mostActions = 32;

struct Locale {
  std::string_view language, country, modifier;
};

Locale splitLocale(std::string_view text) {
  Locale locale;
  if (const std::size_t at = text.find('@'); at != text.npos) {
    locale.modifier = text.substr(at + 1);
    text = text.substr(0, at);
  }
  text = text.substr(0, text.find('.'));
  if (const std::size_t line = text.find('_'); line != text.npos) {
    locale.country = text.substr(line + 1);
    text = text.substr(0, line);
  }
  locale.language = text;
  return locale;
}

// How well a key's locale suits the user's: 0 not at all, 1 for a key without one, up to 5.
int suitability(std::string_view key, const Locale& wanted) {
  if (key.empty()) return 1;
  const Locale offered = splitLocale(key);
  if (offered.language != wanted.language) return 0;
  if (!offered.country.empty() && offered.country != wanted.country) return 0;
  if (!offered.modifier.empty() && offered.modifier != wanted.modifier) return 0;
  return 2 + (offered.country.empty() ? 0 : 2) + (offered.modifier.empty() ? 0 : 1);
}

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string unescape(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    switch (const char c = text[++i]; c) {
      case 's':
        plain += ' ';
        break;
      case 'n':
        plain += '\n';
        break;
      case 't':
        plain += '\t';
        break;
      case 'r':
        plain += '\r';
        break;
      case '\\':
        plain += '\\';
        break;
      default:
        plain += '\\';
        plain += c;
    }
  }
  return plain;
}

// A value that may come in several languages; the best one so far.
class Localised {
 public:
  Localised(std::string& value, const Locale& wanted) : value_(value), wanted_(wanted) {}

  void offer(std::string_view keyLocale, std::string_view text) {
    const int suits = suitability(keyLocale, wanted_);
    if (suits <= best_) return;
    best_ = suits;
    value_ = unescape(text);
  }

 private:
  std::string& value_;
  const Locale& wanted_;
  int best_ = 0;
};

// Whether one of the present desktop's names stands in the list.
bool namesThisDesktop(std::string_view list) {
  const char* const variable = std::getenv("XDG_CURRENT_DESKTOP");
  for (std::string_view rest = list; !rest.empty();) {
    const std::size_t end = rest.find(';');
    const std::string_view named = rest.substr(0, end);
    for (std::string_view present = variable ? variable : ""; !present.empty();) {
      const std::size_t colon = present.find(':');
      if (!named.empty() && present.substr(0, colon) == named) return true;
      present.remove_prefix(colon == present.npos ? present.size() : colon + 1);
    }
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  return false;
}

}  // namespace

bool suitsThisDesktop(const DesktopFile& file) {
  return (file.onlyShowIn.empty() || namesThisDesktop(file.onlyShowIn)) &&
         !namesThisDesktop(file.notShowIn);
}

std::optional<DesktopFile> parseDesktopFile(std::string_view text, std::string_view locale) {
  const Locale wanted = splitLocale(locale);
  DesktopFile file;
  Localised name(file.name, wanted);
  Localised icon(file.icon, wanted);
  enum class Group { other, main, action } group = Group::other;
  bool hasMain = false;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trim(text.substr(0, end));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      const bool isMain = line == "[Desktop Entry]" && !hasMain;
      const bool isAction = line.starts_with("[Desktop Action ");
      group = isMain ? Group::main : isAction ? Group::action : Group::other;
      hasMain = hasMain || isMain;
      continue;
    }
    const std::size_t equals = line.find('=');
    if (group == Group::other || equals == line.npos) continue;
    std::string_view key = trim(line.substr(0, equals));
    const std::string_view value = trim(line.substr(equals + 1));
    std::string_view keyLocale;
    if (const std::size_t bracket = key.find('['); bracket != key.npos && key.ends_with(']')) {
      keyLocale = key.substr(bracket + 1, key.size() - bracket - 2);
      key = key.substr(0, bracket);
    }
    if (group == Group::action) {
      if (key == "Exec" && file.actionExecs.size() < mostActions) {
        file.actionExecs.push_back(unescape(value));
      }
    } else if (key == "Name") {
      name.offer(keyLocale, value);
    } else if (key == "Icon") {
      icon.offer(keyLocale, value);
    } else if (key == "Exec") {
      file.exec = unescape(value);
    } else if (key == "TryExec") {
      file.tryExec = unescape(value);
    } else if (key == "StartupWMClass") {
      file.windowClass = unescape(value);
    } else if (key == "Type") {
      file.application = value == "Application";
    } else if (key == "Hidden") {
      file.hidden = value == "true";
    } else if (key == "NoDisplay") {
      file.noDisplay = value == "true";
    } else if (key == "OnlyShowIn") {
      file.onlyShowIn = unescape(value);
    } else if (key == "NotShowIn") {
      file.notShowIn = unescape(value);
    } else if (key == "X-GNOME-Autostart-enabled") {
      file.autostart = value != "false";
    }
  }
  if (!hasMain) return std::nullopt;
  return file;
}

std::string messagesLocale() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value && *value) {
      const std::string_view locale = value;
      return locale == "C" || locale == "POSIX" || locale.starts_with("C.") ? "" : value;
    }
  }
  return {};
}

}  // namespace tarnwick::desktop
