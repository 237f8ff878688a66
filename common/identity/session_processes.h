#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::desktop {

// The processes of this user on this desktop: those that were started with this process's display
// or session bus, and those whose environment cannot be read. What was found of a process is
// remembered, so that asking again costs one system call for each.
class SessionProcesses {
 public:
  explicit SessionProcesses(std::string procRoot = "/proc") : procRoot_(std::move(procRoot)) {}

  // Process ids, ascending, without this process's own. Those of `itemOwners` that live are among
  // them whoever runs them: they are known to be on this desktop by what they show on it. So are
  // those of `windowOwners`, if this user runs them: a window may tell any id, and a sandbox does.
  std::vector<std::int32_t> list(const std::set<std::int32_t>& itemOwners,
                                 const std::set<std::int32_t>& windowOwners = {});

 private:
  // The kernel makes a folder anew for each process.
  struct Folder {
    std::uint64_t inode = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    bool operator==(const Folder&) const = default;
  };
  struct Known {
    Folder folder;
    bool alive = false;  // no thread of the kernel and no process that has ended
    bool ofThisUser = false;
    bool ours = false;
    bool young = false;  // it may yet become another program, with another environment
  };

  Known examine(std::int32_t pid, bool ownFolder) const;

  std::string procRoot_;
  std::map<std::int32_t, Known> known_;
};

}  // namespace tarnwick::desktop
