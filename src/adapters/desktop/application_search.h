#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/desktop/desktop_entries.h"
#include "adapters/desktop/identity.h"
#include "adapters/desktop/launch_unit.h"
#include "adapters/desktop/process.h"

namespace tarnwick::desktop {

// Works out which application a process belongs to. Only facts of the process decide the id:
// windows come and go, often after the first question, and the id must be the same at every start.
// They are asked just for the name and icon of a process known by its base name. Lives for one
// look-up and remembers nothing.
class ApplicationSearch {
 public:
  using WindowHintsOf = std::function<std::vector<WindowHints>(std::int32_t)>;

  ApplicationSearch(const DesktopEntries& entries, const WindowHintsOf& windowHints,
                    std::string procRoot);

  // The answer for a live process.
  ApplicationIdentity find(std::int32_t pid, const Process::Stat& stat) const;

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
  struct Answer {
    ApplicationIdentity identity;
    bool certain = false;  // by a desktop file or a sandbox, not just by name
  };
  using Found = std::optional<ApplicationIdentity>;

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

  // Whether an entry that the process may have inherited is its own.
  bool plausible(const DesktopEntry* entry, const Subject& subject) const;
  bool startsUnit(const Subject& subject) const;
  // The entry of that id, or just the id.
  ApplicationIdentity withId(const std::string& id) const;

  const DesktopEntries& entries_;
  const WindowHintsOf& windowHints_;
  std::string procRoot_;
};

}  // namespace tarnwick::desktop
