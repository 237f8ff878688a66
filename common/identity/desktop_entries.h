#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "common/identity/identity.h"

namespace tarnwick::desktop {

// A program as a command names it.
struct NamedProgram {
  std::string program;
  std::string name;  // see canonicalName
};

// What is kept of one installed application's desktop file to find it by.
struct DesktopEntry {
  std::string id;           // without ".desktop"
  std::string program;      // what Exec runs in the end, see programOf
  std::string programName;  // of that, see canonicalName
  // Further programs of the application: of TryExec, the desktop actions and, once it was looked
  // into, a start script that is `program`.
  std::vector<NamedProgram> others;
  std::string windowClass;  // StartupWMClass
  std::uint32_t folder = 0;
  bool hasArguments = false;
  bool shown = true;  // in menus
};

// An entry found by a program.
struct ProgramMatch {
  const DesktopEntry* entry = nullptr;
  bool sure = false;  // it names the program itself, not just something alike
};

// The desktop files below "applications/" of the XDG data directories: the first of an id wins, a
// hidden one deletes the id. Read at the first look-up and again when a folder changed.
class DesktopEntries {
 public:
  // Called before a series of look-ups: compares the folders' times and reads anew if needed, which
  // is then told. What the look-ups returned before is then invalid.
  bool refresh();

  const DesktopEntry* byId(std::string_view id) const;
  // By an id or path as processes and windows tell it: with or without ".desktop", in any case.
  const DesktopEntry* byName(std::string_view name) const;
  // The entry that runs the program: one that names it before one that is only named alike, and of
  // those one in the menus before others. Looks into start scripts if that is needed.
  ProgramMatch byProgram(std::string_view path);
  // By StartupWMClass, exactly and then in any case, else by id as byName or its last part.
  const DesktopEntry* byWindowClass(std::string_view windowClass) const;

  // With name and icon, which only the file holds.
  ApplicationIdentity identity(const DesktopEntry& entry) const;

  // Whether the entry names this program by Exec, TryExec, an action or its id.
  static bool names(const DesktopEntry& entry, std::string_view path);

 private:
  struct Folder {
    std::string path;
    std::string idPrefix;
    std::optional<std::int64_t> changed;  // nanoseconds; absent when it must be read again
  };

  ProgramMatch bestMatch(std::string_view path, std::string_view name) const;
  void readAllFolders();
  void readFolder(const std::string& path, const std::string& idPrefix,
                  std::unordered_set<std::string>& seen, int depth);

  std::vector<DesktopEntry> entries_;  // in order of precedence
  std::vector<Folder> folders_;        // also those that are missing
  bool scriptsRead_ = false;
};

}  // namespace tarnwick::desktop
