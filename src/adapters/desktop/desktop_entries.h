#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "adapters/desktop/identity.h"

namespace tarnwick::desktop {

// What is kept of one installed application's desktop file to find it by.
struct DesktopEntry {
  std::string id;           // without ".desktop"
  std::string program;      // what Exec runs in the end, see programOf
  std::string programName;  // of that, see canonicalName
  std::string tryName;      // the same of TryExec, when it names another program
  std::string windowClass;  // StartupWMClass
  std::uint32_t folder = 0;
  bool hasArguments = false;
  bool shown = true;  // in menus
};

// The desktop files below "applications/" of the XDG data directories: the first of an id wins, a
// hidden one deletes the id. Read at the first look-up and again when a folder changed.
class DesktopEntries {
 public:
  // Called before a series of look-ups: compares the folders' times and reads anew if needed. What
  // the look-ups returned before is then invalid.
  void refresh();

  const DesktopEntry* byId(std::string_view id) const;
  // By an id or path as processes and windows tell it: with or without ".desktop", in any case.
  const DesktopEntry* byName(std::string_view name) const;
  // The entry that runs the program: by its path, else by a name it goes under.
  const DesktopEntry* byProgram(std::string_view path) const;
  // By StartupWMClass, exactly and then in any case, else by id as byName or its last part.
  const DesktopEntry* byWindowClass(std::string_view windowClass) const;

  // With name and icon, which only the file holds.
  ApplicationIdentity identity(const DesktopEntry& entry) const;

  // Whether the entry names this program by Exec, TryExec or its id.
  static bool names(const DesktopEntry& entry, std::string_view path);

 private:
  struct Folder {
    std::string path;
    std::string idPrefix;
    std::optional<std::int64_t> changed;  // nanoseconds; absent when it must be read again
  };

  void readAllFolders();
  void readFolder(const std::string& path, const std::string& idPrefix,
                  std::unordered_set<std::string>& seen, int depth);

  std::vector<DesktopEntry> entries_;  // in order of precedence
  std::vector<Folder> folders_;        // also those that are missing
};

}  // namespace tarnwick::desktop
