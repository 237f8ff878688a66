#include "common/identity/session_processes.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "common/identity/process.h"

namespace tarnwick::desktop {

namespace {

// ":0" of ":0.0": a display's screens are one desktop.
std::string_view displayOf(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == name.npos ? name : name.substr(0, name.find('.', colon));
}

// Without the server's id, which not every program hands on.
std::string busOf(std::string_view address, std::string_view runtimeFolder) {
  if (address.empty() && !runtimeFolder.empty()) {
    return "unix:path=" + std::string(runtimeFolder) + "/bus";
  }
  return std::string(address.substr(0, address.find(",guid=")));
}

std::string_view own(const char* variable) {
  const char* const value = std::getenv(variable);
  return value ? value : "";
}

// Whether both are told and the same.
bool agree(std::string_view one, std::string_view other) {
  return !one.empty() && one == other;
}

bool hasJustStarted(const Process& process) {
  constexpr int soon = 2;  // seconds
  const auto stat = process.stat();
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const auto second = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
  return stat && stat->startTime / second + soon >= static_cast<std::uint64_t>(now.tv_sec);
}

}  // namespace

std::vector<std::int32_t> SessionProcesses::list(const std::set<std::int32_t>& itemOwners,
                                                 const std::set<std::int32_t>& windowOwners) {
  std::map<std::int32_t, Known> present;
  std::vector<std::int32_t> pids;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(procRoot_.c_str()), closedir);
  while (const dirent* const entry = folder ? readdir(folder.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    std::int32_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    struct stat info {};
    if (error != std::errc() || end != name.data() + name.size() || pid == getpid() ||
        fstatat(dirfd(folder.get()), entry->d_name, &info, 0) != 0) {
      continue;
    }
    const Folder stamp{info.st_ino, info.st_ctim.tv_sec, info.st_ctim.tv_nsec};
    const auto found = known_.find(pid);
    const bool isKnown =
        found != known_.end() && found->second.folder == stamp && !found->second.young;
    Known known = isKnown ? found->second : examine(pid, info.st_uid == getuid());
    known.folder = stamp;
    present.emplace(pid, known);
  }
  known_ = std::move(present);
  for (const auto& [pid, known] : known_) {
    const bool shows = itemOwners.contains(pid) || (known.ofThisUser && windowOwners.contains(pid));
    if (known.alive && (known.ours || shows)) pids.push_back(pid);
  }
  return pids;
}

SessionProcesses::Known SessionProcesses::examine(std::int32_t pid, bool ownFolder) const {
  Known known;
  const Process process(procRoot_, pid);
  known.alive = !process.arguments().empty();
  known.young = known.alive && hasJustStarted(process);
  // A hardened process's folder is root's.
  known.ofThisUser = ownFolder || process.user() == getuid();
  if (!known.alive || !known.ofThisUser) return known;
  if (!process.hasEnvironment()) {
    known.ours = true;
    return known;
  }
  known.ours = agree(displayOf(process.variable("DISPLAY")), displayOf(own("DISPLAY"))) ||
               agree(busOf(process.variable("DBUS_SESSION_BUS_ADDRESS"),
                           process.variable("XDG_RUNTIME_DIR")),
                     busOf(own("DBUS_SESSION_BUS_ADDRESS"), own("XDG_RUNTIME_DIR")));
  return known;
}

}  // namespace tarnwick::desktop
