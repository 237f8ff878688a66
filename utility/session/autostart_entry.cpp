#include "utility/session/autostart_entry.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "common/files/file.h"
#include "common/files/json_file.h"
#include "common/identity/desktop_file.h"
#include "common/identity/own_program.h"

namespace tarnwick::desktop {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longestEntry = 1 << 20;

std::vector<std::string> split(std::string_view list, char separator) {
  std::vector<std::string> parts;
  while (!list.empty()) {
    const auto end = list.find(separator);
    if (end != 0) parts.emplace_back(list.substr(0, end));
    list.remove_prefix(end == list.npos ? list.size() : end + 1);
  }
  return parts;
}

std::vector<fs::path> systemFolders() {
  const char* const variable = std::getenv("XDG_CONFIG_DIRS");
  std::vector<fs::path> folders;
  for (const auto& folder : split(variable && *variable ? variable : "/etc/xdg", ':')) {
    if (folder.front() == '/') folders.push_back(fs::path(folder) / "autostart");
  }
  return folders;
}

fs::path ownFolder() {
  return configHome() / "autostart";
}

// Absent when there is no such file.
std::optional<bool> startsAtLogin(const fs::path& entry) {
  std::error_code error;
  if (!fs::exists(entry, error)) return std::nullopt;
  const auto text = readFile(entry, longestEntry);
  const auto file = text ? parseDesktopFile(*text, "") : std::nullopt;
  return file && file->application && !file->hidden && file->autostart && !file->exec.empty() &&
         (file->tryExec.empty() || !findProgram(file->tryExec).empty()) && suitsThisDesktop(*file);
}

bool systemStarts(const std::string& fileName) {
  for (const auto& folder : systemFolders()) {
    if (const auto starts = startsAtLogin(folder / fileName)) return *starts;
  }
  return false;
}

// As a value of a desktop entry.
std::string escaped(const std::string& text) {
  std::string value;
  for (const char c : text) {
    if (c == '\\') value += '\\';
    value += c;
  }
  return value;
}

// As the program of a command line, before it is escaped as a value.
std::string quoted(const std::string& path) {
  std::string word;
  bool plain = true;
  for (const char c : path) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) word += '\\';
    if (c == '%') word += '%';
    word += c;
    plain = plain && (std::isalnum(static_cast<unsigned char>(c)) ||
                      std::string_view("/._-+@:,").find(c) != std::string_view::npos);
  }
  return plain ? word : '"' + word + '"';
}

}  // namespace

AutostartEntry::AutostartEntry(std::string id, std::string program)
    : fileName_(std::move(id) + ".desktop"), program_(std::move(program)) {}

bool AutostartEntry::isEnabled() const {
  return startsAtLogin(ownFolder() / fileName_).value_or(systemStarts(fileName_));
}

bool AutostartEntry::registerItem() {
  if (program_.find('\n') != program_.npos || findProgram(program_).empty()) return false;
  return write(
             "[Desktop Entry]\nType=Application\nName=Tarnwick\n"
             "Comment=Keep status items out of the top bar and within reach\n"
             "Exec=" +
             escaped(quoted(program_)) + "\nTryExec=" + escaped(program_) +
             "\nIcon=" + fs::path(fileName_).stem().string() +
             "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n") &&
         isEnabled();
}

bool AutostartEntry::unregisterItem() {
  if (systemStarts(fileName_)) {
    return write("[Desktop Entry]\nType=Application\nName=Tarnwick\nHidden=true\n");
  }
  return unlink((ownFolder() / fileName_).c_str()) == 0 || errno == ENOENT || !isEnabled();
}

bool AutostartEntry::write(const std::string& text) const {
  const fs::path folder = ownFolder();
  std::error_code error;
  fs::create_directories(folder, error);
  const auto replace = [&](const fs::path& file) {
    return replaceFile(file, file.string() + "." + std::to_string(getpid()), text, 0644);
  };
  // Users keep such files elsewhere and link to them; a link to what is not theirs gives way.
  const fs::path file = folder / fileName_;
  const fs::path target = linkTarget(file);
  return replace(target) || (target != file && replace(file));
}

}  // namespace tarnwick::desktop
