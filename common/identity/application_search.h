#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/identity/desktop_entries.h"
#include "common/identity/identity.h"
#include "common/identity/launch_unit.h"
#include "common/identity/process.h"

namespace tarnwick::desktop {

// Works out which application a process belongs to. Only facts of the process decide the id:
// windows come and go, often after the first question, and the id must be the same at every start.
// They are asked just for the name and icon of a process known by its base name. Lives for one
// look-up and remembers nothing.
class ApplicationSearch {
 public:
  using WindowHintsOf = std::function<std::vector<WindowHints>(std::int32_t)>;

  using BusNamesOf = std::function<std::vector<std::string>(std::int32_t)>;

  ApplicationSearch(DesktopEntries& entries, const WindowHintsOf& windowHints,
                    const BusNamesOf& busNames, std::string procRoot);

  struct Answer {
    ApplicationIdentity identity;
    bool certain = false;  // by a desktop file or a sandbox, not just by name
    bool guessed = true;   // more of the desktop's files, names and windows may lead further
  };

  // The answer for a live process.
  Answer find(std::int32_t pid, const Process::Stat& stat) const;

 private:
  // One process with what the steps have in common about it.
  struct Subject {
    Subject(const std::string& procRoot, std::int32_t pid, Process::Stat processStat);

    Process process;
    Process::Stat stat;
    std::string executable;
    std::string program;  // what it runs: the executable, or an interpreter's script
    std::string unitName;
    LaunchUnit unit;
    std::string appImage;  // the image it was mounted from
  };
  using Found = std::optional<Answer>;

  Answer search(const Subject& subject, int depth) const;
  Found byFlatpak(const Subject& subject) const;
  Found byUnit(const Subject& subject) const;
  Found bySnap(const Subject& subject) const;
  Found byEnvironment(const Subject& subject) const;
  Found byProgram(const Subject& subject) const;
  std::optional<Answer> byParent(const Subject& subject, int depth) const;
  static std::string baseNameOf(const Subject& subject);
  // The name and icon that the process's windows lead to.
  void describe(ApplicationIdentity& identity, const Subject& subject) const;
  static void addIconNames(ApplicationIdentity& identity, const Subject& subject);

  // Whether an entry that the process may have inherited is its own.
  bool plausible(const DesktopEntry* entry, const Subject& subject) const;
  bool startsUnit(const Subject& subject) const;
  // The entry of that id, or just the id.
  Answer withId(const std::string& id) const;
  // The answer that an entry gives of which a launcher told. Of an application's several entries
  // the one in the menus speaks for it.
  Answer launched(const DesktopEntry& entry, const Subject& subject) const;
  Answer known(const DesktopEntry& entry, bool guessed) const;
  // The entry whose id is a name on the bus that the process owns.
  const DesktopEntry* byBusName(const Subject& subject) const;

  DesktopEntries& entries_;
  const WindowHintsOf& windowHints_;
  const BusNamesOf& busNames_;
  std::string procRoot_;
};

}  // namespace tarnwick::desktop
