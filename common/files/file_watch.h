#pragma once

#include <filesystem>
#include <set>

#include "common/files/file.h"

namespace tarnwick::desktop {

// Tells when a file may have changed: written in place, replaced, removed or made, also when its
// folders are missing or it is a symbolic link. Nothing is polled.
class FileWatch {
 public:
  explicit FileWatch(std::filesystem::path file);

  // Readable when the file may have changed since the last rearm(); -1 when the system gives none.
  int descriptor() const { return events_.get(); }
  // To be called before the file is looked at again: forgets what has happened and follows the
  // folders that are there now.
  void rearm();

 private:
  void watch(const std::filesystem::path& folder, std::set<int>& wanted) const;

  const std::filesystem::path file_;
  const UniqueFd events_;
  std::set<int> watched_;  // inotify's numbers of the folders
};

}  // namespace tarnwick::desktop
