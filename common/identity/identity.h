#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/files/file.h"

namespace tarnwick::desktop {

// Which application a process belongs to.
struct ApplicationIdentity {
  // Desktop-file id without ".desktop" (for a flatpak or snap its own id), else the base name of
  // the executable, or of the script an interpreter runs. Never empty.
  std::string bundleId;
  std::string name;  // localised; empty when no desktop file is known
  std::string icon;  // icon theme name or absolute path; empty when unknown
  // Names under which a theme may have its picture when it has none of that name: the window
  // class, the id, the program's. At most 16.
  std::vector<std::string> otherIcons;
};

// Names by which a window tells its application. Each may be empty.
struct WindowHints {
  std::string applicationId;  // _GTK_APPLICATION_ID, _KDE_NET_WM_DESKTOP_FILE or _BAMF_DESKTOP_FILE
  std::string windowClass;    // WM_CLASS class
  std::string windowInstance;  // WM_CLASS instance
};

class DesktopEntries;

// Finds applications by process through /proc and desktop files. An answer is remembered as long as
// the process lives and executes the same program, so that asking again costs little; a guess is
// looked into again when something new may lead further.
class IdentityResolver {
 public:
  using WindowHintsOf = std::function<std::vector<WindowHints>(std::int32_t)>;
  using BusNamesOf = std::function<std::vector<std::string>(std::int32_t)>;

  // `windowHints`, if given, tells what the process's windows say of themselves; asked only for the
  // name and icon when the process itself led to no desktop file, so that the bundle id does not
  // depend on the moment of asking. `busNames`, if given, tells the well-known names that the
  // process owns on the session bus. Both are asked anew only after sourcesChanged().
  // `procRoot` is "/proc" but for tests.
  explicit IdentityResolver(WindowHintsOf windowHints = {}, std::string procRoot = "/proc",
                            BusNamesOf busNames = {});
  ~IdentityResolver();

  // Absent when there is no such process. The id of an application that was told for sure stays as
  // it is.
  std::optional<ApplicationIdentity> identify(std::int32_t pid);
  // The same for many, in their order.
  std::vector<std::optional<ApplicationIdentity>> identify(const std::vector<std::int32_t>& pids);

  // To be told when `windowHints` or `busNames` may answer otherwise than before.
  void sourcesChanged() { ++revision_; }
  // Another number than before when identify() may answer otherwise about a living process. Looks
  // whether the desktop files have changed.
  std::uint64_t revision();

  // Absolute path of the process's executable, " (deleted)" taken off; empty when it cannot be
  // read, and when that path is another file, or none, outside the process's own mounts.
  std::string executable(std::int32_t pid) const;

 private:
  struct Known {
    std::uint64_t startTime = 0;
    UniqueFd handle;  // readable once the process has ended; none where the kernel gives none
    std::string executable;
    ApplicationIdentity identity;
    bool guessed = true;
    std::uint64_t revision = 0;         // at which it was last looked into
    std::uint64_t entriesRevision = 0;  // the same of the desktop files
  };

  std::optional<ApplicationIdentity> lookUp(std::int32_t pid);
  bool isCurrent(std::int32_t pid, Known& known);
  void forgetEnded();

  WindowHintsOf windowHints_;
  BusNamesOf busNames_;
  std::string procRoot_;
  std::unique_ptr<DesktopEntries> entries_;
  std::uint64_t revision_ = 0;
  std::uint64_t entriesRevision_ = 0;
  std::map<std::int32_t, Known> known_;
};

}  // namespace tarnwick::desktop
