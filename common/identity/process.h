#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::desktop {

// What /proc tells of one process. Everything but the environment is read anew at each call;
// whatever cannot be read (another user's process, a hardened one, none any more) is empty.
class Process {
 public:
  struct Stat {
    std::string name;  // at most 15 bytes, as the process set it
    std::int32_t parent = 0;
    std::int32_t session = 0;
    std::int32_t terminal = 0;    // device number of the controlling terminal, 0 without one
    std::uint64_t startTime = 0;  // clock ticks since boot
  };

  Process(std::string procRoot, std::int32_t pid);

  std::int32_t pid() const { return pid_; }
  std::optional<Stat> stat() const;  // absent also once it has ended
  // Absolute path, without the kernel's mark for a file replaced since.
  std::string executable() const;
  // The same if that path leads to this very file for us too, else empty: a process with mounts of
  // its own can have any path. A file replaced since is taken at its word only without such mounts.
  std::string verifiedExecutable() const;
  std::string workingDirectory() const;
  std::vector<std::string> arguments() const;
  // Real user id, also of a hardened process; absent when it cannot be read.
  std::optional<std::uint32_t> user() const;
  // Whether the environment could be read and is not empty.
  bool hasEnvironment() const;
  // A variable of the environment that the process was started with.
  std::string variable(const std::string& name) const;
  // Innermost systemd unit ("app-foo-1234.scope"), as written in the cgroup's path.
  std::string unit() const;
  // Application id of the flatpak sandbox that the process runs in.
  std::string flatpakId() const;
  // AppArmor label without its mode ("snap.foo.bar").
  std::string securityLabel() const;

 private:
  const std::map<std::string, std::string>& environment() const;
  std::string read(const char* file) const;
  std::string link(const char* file) const;

  std::string folder_;  // "/proc/<pid>/"
  std::int32_t pid_;
  mutable std::optional<std::map<std::string, std::string>> environment_;
};

}  // namespace tarnwick::desktop
