#include "common/files/json_file.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "common/files/file.h"

namespace tarnwick::desktop {

namespace fs = std::filesystem;
using nlohmann::json;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t kMaxBytes = 16 << 20;
constexpr int kMaxDepth = 64;
constexpr auto kLockWait = 500ms;
constexpr int kMaxDamaged = 1000;

enum class State { good, missing, damaged, unsettled, unreadable };

struct Contents {
  State state = State::missing;
  json document;
  mode_t mode = 0600;
};

// The library writes and copies documents by recursion, so their depth is bounded before parsing.
bool nestsTooDeep(std::string_view text) {
  int depth = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '\\') {
        ++i;
      } else if (c == '"') {
        quoted = false;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == '[' || c == '{') {
      if (++depth > kMaxDepth) return true;
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return false;
}

bool hasRoot(const json& document, JsonRoot root) {
  switch (root) {
    case JsonRoot::object:
      return document.is_object();
    case JsonRoot::array:
      return document.is_array();
    case JsonRoot::any:
      break;
  }
  return true;
}

// Whether the file was changed within that time; somebody may still be writing it in place.
bool changedWithin(const struct stat& info, std::chrono::nanoseconds time) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const auto age = std::chrono::seconds(now.tv_sec - info.st_ctim.tv_sec) +
                   std::chrono::nanoseconds(now.tv_nsec - info.st_ctim.tv_nsec);
  return age >= 0ns && age < time;
}

Contents load(const fs::path& file, JsonRoot root, std::chrono::nanoseconds settleTime) {
  Contents contents;
  const UniqueFd fd(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!fd) {
    contents.state = errno == ENOENT ? State::missing : State::unreadable;
    return contents;
  }
  struct stat info {};
  if (fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    contents.state = State::unreadable;
    return contents;
  }
  contents.mode = info.st_mode & 0777;
  const State bad = changedWithin(info, settleTime) ? State::unsettled : State::damaged;
  if (static_cast<std::uintmax_t>(info.st_size) > kMaxBytes) {
    contents.state = bad;
    return contents;
  }
  const std::optional<std::string> text = readAll(fd.get(), kMaxBytes);
  if (!text) {
    contents.state = State::unreadable;
    return contents;
  }
  if (!nestsTooDeep(*text)) {
    json document = json::parse(*text, nullptr, /*allow_exceptions=*/false);
    if (!document.is_discarded() && hasRoot(document, root)) {
      contents.state = State::good;
      contents.document = std::move(document);
      return contents;
    }
  }
  contents.state = bad;
  return contents;
}

fs::path withSuffix(const fs::path& file, const std::string& suffix) {
  return fs::path(file.native() + suffix);
}

fs::path folderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

bool makeFolder(const fs::path& folder) {
  if (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return true;
  if (errno != ENOENT || !folder.has_relative_path()) return false;
  return makeFolder(folderOf(folder)) && (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST);
}

// Byte ranges of the lock file. Who waits for `turn` holds `queue`, so that a process that writes
// over and over cannot keep the others out.
enum class LockPart : off_t { queue, turn };

bool setLock(int fd, LockPart part, short type) {
  struct flock range {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = static_cast<off_t>(part);
  range.l_len = 1;
  return fcntl(fd, F_OFD_SETLK, &range) == 0;
}

// Holds the lock for as long as the descriptor lives; none when another process keeps it.
UniqueFd lock(const fs::path& file) {
  UniqueFd fd(open(withSuffix(file, ".lock").c_str(),
                   O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!fd) return fd;
  const auto end = std::chrono::steady_clock::now() + kLockWait;
  for (const LockPart part : {LockPart::queue, LockPart::turn}) {
    while (!setLock(fd.get(), part, F_WRLCK)) {
      if (errno != EINTR && errno != EAGAIN && errno != EACCES) return UniqueFd();
      if (std::chrono::steady_clock::now() >= end) return UniqueFd();
      std::this_thread::sleep_for(1ms);
    }
  }
  setLock(fd.get(), LockPart::queue, F_UNLCK);
  return fd;
}

// The lock must be held, so that what is moved is what was found damaged.
bool keepAside(const fs::path& file) {
  for (int i = 1; i <= kMaxDamaged; ++i) {
    const fs::path aside = withSuffix(file, i == 1 ? ".damaged" : ".damaged-" + std::to_string(i));
    if (renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
      return true;
    }
    if (errno == EEXIST) continue;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // File systems without an exclusive rename.
    if (link(file.c_str(), aside.c_str()) == 0) return unlink(file.c_str()) == 0;
    if (errno != EEXIST) return false;
  }
  return false;
}

fs::path baseDirectory(const char* variable, const char* underHome) {
  const char* value = std::getenv(variable);
  if (value && value[0] == '/') return value;
  const char* home = std::getenv("HOME");
  if (!home || home[0] != '/') {
    const passwd* user = getpwuid(getuid());
    home = user && user->pw_dir ? user->pw_dir : "/";
  }
  return fs::path(home) / underHome;
}

}  // namespace

json JsonFile::read() const {
  return tryRead().value_or(nullptr);
}

std::optional<json> JsonFile::tryRead() const {
  const fs::path file = linkTarget(path_);
  Contents contents = load(file, root_, settleTime_);
  if (contents.state == State::damaged) {
    // Looked at again under the lock: a writer may have just put a good one in its place.
    const UniqueFd held = lock(file);
    if (!held) return json();
    contents = load(file, root_, settleTime_);
    if (contents.state == State::damaged) keepAside(file);
  }
  if (contents.state == State::unsettled || contents.state == State::unreadable) {
    return std::nullopt;
  }
  return std::move(contents.document);
}

bool JsonFile::update(const std::function<bool(json&)>& change) const {
  const fs::path file = linkTarget(path_);
  if (!makeFolder(folderOf(file))) return false;
  const UniqueFd held = lock(file);
  if (!held) return false;
  Contents contents = load(file, root_, settleTime_);
  if (contents.state == State::unsettled || contents.state == State::unreadable) return false;
  if (contents.state == State::damaged && !keepAside(file)) return false;
  if (!change(contents.document)) return false;
  const std::string text =
      contents.document.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
  if (text.size() > kMaxBytes || nestsTooDeep(text)) return false;
  // Only the lock's holder writes there; what is found was left by a writer that died.
  return replaceFile(file, withSuffix(file, ".new"), text, contents.mode);
}

fs::path configHome() {
  return baseDirectory("XDG_CONFIG_HOME", ".config");
}
fs::path dataHome() {
  return baseDirectory("XDG_DATA_HOME", ".local/share");
}
fs::path stateHome() {
  return baseDirectory("XDG_STATE_HOME", ".local/state");
}

}  // namespace tarnwick::desktop
