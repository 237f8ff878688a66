#include "common/files/file_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <utility>

namespace tarnwick::desktop {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t changes =
    IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}  // namespace

FileWatch::FileWatch(fs::path file)
    : file_(std::move(file)), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  rearm();
}

void FileWatch::rearm() {
  if (!events_) return;
  char events[4096];
  while (read(events_.get(), events, sizeof events) > 0) {
  }
  std::set<int> wanted;
  for (const fs::path& file : {file_, linkTarget(file_)}) watch(file.parent_path(), wanted);
  for (const int number : watched_) {
    if (!wanted.contains(number)) inotify_rm_watch(events_.get(), number);
  }
  watched_ = std::move(wanted);
}

// A folder that is missing is waited for in the nearest one that is there.
void FileWatch::watch(const fs::path& folder, std::set<int>& wanted) const {
  const int number = inotify_add_watch(events_.get(), folder.c_str(), changes);
  if (number >= 0) {
    wanted.insert(number);
    return;
  }
  if (!folder.has_relative_path()) return;
  watch(folder.parent_path(), wanted);
  // It may have been made before its parent was watched.
  const int late = inotify_add_watch(events_.get(), folder.c_str(), changes);
  if (late >= 0) wanted.insert(late);
}

}  // namespace tarnwick::desktop
