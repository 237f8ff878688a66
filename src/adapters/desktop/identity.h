#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/desktop/file.h"

namespace tarnwick::desktop {

// Which application a process belongs to.
struct ApplicationIdentity {
  // Desktop-file id without ".desktop" (for a flatpak or snap its own id), else the base name of
  // the executable, or of the script an interpreter runs. Never empty.
  std::string bundleId;
  std::string name;  // localised; empty when no desktop file is known
  std::string icon;  // icon theme name or absolute path; empty when unknown
};

// Names by which a window tells its application. Each may be empty.
struct WindowHints {
  std::string applicationId;  // _GTK_APPLICATION_ID, _KDE_NET_WM_DESKTOP_FILE or _BAMF_DESKTOP_FILE
  std::string windowClass;    // WM_CLASS class
  std::string windowInstance;  // WM_CLASS instance
};

class DesktopEntries;

// Finds applications by process through /proc and desktop files. The first answer holds for the
// process's life, so that asking again costs one system call.
class IdentityResolver {
 public:
  // `windowHints`, if given, tells what the process's windows say of themselves; asked only for the
  // name and icon when the process itself led to no desktop file, so that the bundle id does not
  // depend on the moment of asking.
  // `procRoot` is "/proc" but for tests.
  explicit IdentityResolver(std::function<std::vector<WindowHints>(std::int32_t)> windowHints = {},
                            std::string procRoot = "/proc");
  ~IdentityResolver();

  // Absent when there is no such process.
  std::optional<ApplicationIdentity> identify(std::int32_t pid);

  // Absolute path of the process's executable, " (deleted)" taken off; empty when it cannot be
  // read, and when that path is another file, or none, outside the process's own mounts.
  std::string executable(std::int32_t pid) const;

 private:
  struct Known {
    std::uint64_t startTime = 0;
    UniqueFd handle;  // readable once the process has ended; none where the kernel gives none
    ApplicationIdentity identity;
  };

  void forgetEnded();

  std::function<std::vector<WindowHints>(std::int32_t)> windowHints_;
  std::string procRoot_;
  std::unique_ptr<DesktopEntries> entries_;
  std::map<std::int32_t, Known> known_;
};

}  // namespace tarnwick::desktop
