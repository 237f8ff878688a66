#include "common/identity/process.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <climits>
#include <string_view>
#include <utility>

#include "common/files/file.h"

namespace tarnwick::desktop {

namespace {

// A command line or an environment may be this long on Linux.
constexpr std::size_t kMaxFile = 2 << 20;
constexpr std::size_t kMaxFlatpakInfo = 64 << 10;
constexpr std::string_view kDeleted = " (deleted)";  // the kernel's mark

// Takes the text up to `separator`, and the separator, off the front.
std::string_view take(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view front = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return front;
}

template <typename Number>
bool parse(std::string_view text, Number& number) {
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

bool isUnit(std::string_view name) {
  return name.ends_with(".scope") || name.ends_with(".service");
}

std::string_view innermostUnit(std::string_view path) {
  while (!path.empty()) {
    const std::size_t slash = path.rfind('/');
    const std::string_view name = slash == path.npos ? path : path.substr(slash + 1);
    if (isUnit(name)) return name;
    if (slash == path.npos) break;
    path = path.substr(0, slash);
  }
  return {};
}

// Whether both paths lead to one file. What is known of it already is enough: no file system is
// asked anew.
bool isSameFile(const std::string& one, const std::string& other) {
  struct statx first {};
  struct statx second {};
  constexpr int flags = AT_STATX_DONT_SYNC;
  return statx(AT_FDCWD, one.c_str(), flags, STATX_INO, &first) == 0 &&
         statx(AT_FDCWD, other.c_str(), flags, STATX_INO, &second) == 0 &&
         first.stx_ino == second.stx_ino && first.stx_dev_major == second.stx_dev_major &&
         first.stx_dev_minor == second.stx_dev_minor;
}

}  // namespace

Process::Process(std::string procRoot, std::int32_t pid)
    : folder_(std::move(procRoot) + "/" + std::to_string(pid) + "/"), pid_(pid) {}

std::optional<Process::Stat> Process::stat() const {
  const std::string text = read("stat");
  // The name stands in parentheses and may itself hold parentheses and spaces.
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  if (open == std::string::npos || close == std::string::npos || close < open) return std::nullopt;
  std::array<std::string_view, 20> fields;  // from the third on: state, parent, group, ...
  std::string_view rest = std::string_view(text).substr(close + 1);
  take(rest, ' ');
  for (std::string_view& field : fields) field = take(rest, ' ');
  // One that has ended runs no more, though its parent has yet to take notice.
  if (fields[0] == "Z" || fields[0] == "X") return std::nullopt;
  Stat stat;
  stat.name = text.substr(open + 1, close - open - 1);
  if (!parse(fields[1], stat.parent) || !parse(fields[3], stat.session) ||
      !parse(fields[4], stat.terminal) || !parse(fields[19], stat.startTime)) {
    return std::nullopt;
  }
  return stat;
}

std::string Process::executable() const {
  std::string path = link("exe");
  if (path.ends_with(kDeleted)) path.resize(path.size() - kDeleted.size());
  return path.starts_with('/') ? path : std::string();
}

std::string Process::verifiedExecutable() const {
  std::string path = link("exe");
  if (!path.starts_with('/')) return {};
  if (isSameFile(folder_ + "exe", path)) return path;
  if (!path.ends_with(kDeleted) || !isSameFile(folder_ + "ns/mnt", folder_ + "../self/ns/mnt")) {
    return {};
  }
  path.resize(path.size() - kDeleted.size());
  return path;
}

std::string Process::workingDirectory() const {
  return link("cwd");
}

std::vector<std::string> Process::arguments() const {
  const std::string text = read("cmdline");
  std::string_view rest = text;
  std::vector<std::string> arguments;
  while (!rest.empty()) arguments.emplace_back(take(rest, '\0'));
  // A process that shortens its title leaves the rest of the space blank.
  while (!arguments.empty() && arguments.back().empty()) arguments.pop_back();
  return arguments;
}

std::optional<std::uint32_t> Process::user() const {
  constexpr std::string_view key = "\nUid:\t";
  const std::string text = read("status");
  const std::size_t start = text.find(key);
  std::uint32_t user = 0;
  if (start == text.npos || !parse(std::string_view(text).substr(start + key.size()), user)) {
    return std::nullopt;
  }
  return user;
}

bool Process::hasEnvironment() const {
  return !environment().empty();
}

std::string Process::variable(const std::string& name) const {
  const auto found = environment().find(name);
  return found == environment().end() ? std::string() : found->second;
}

const std::map<std::string, std::string>& Process::environment() const {
  if (!environment_) {
    environment_.emplace();
    const std::string text = read("environ");
    std::string_view rest = text;
    while (!rest.empty()) {
      std::string_view value = take(rest, '\0');
      const std::string key(take(value, '='));
      environment_->try_emplace(key, value);
    }
  }
  return *environment_;
}

std::string Process::unit() const {
  const std::string text = read("cgroup");
  std::string_view rest = text;
  std::string_view unit;
  while (!rest.empty()) {
    std::string_view path = take(rest, '\n');
    const std::string_view hierarchy = take(path, ':');
    const std::string_view controllers = take(path, ':');
    // The second is systemd's own hierarchy where controllers still have one each.
    if (hierarchy == "0" || controllers == "name=systemd") {
      if (const std::string_view found = innermostUnit(path); !found.empty()) unit = found;
    }
  }
  return std::string(unit);
}

std::string Process::flatpakId() const {
  // The sandbox's files are the application's own: no link of its making is followed.
  const UniqueFd root(open((folder_ + "root").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!root) return {};
  const UniqueFd info(openat(root.get(), ".flatpak-info",
                             O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat kind {};
  if (!info || fstat(info.get(), &kind) != 0 || !S_ISREG(kind.st_mode)) return {};
  const std::string text = readAll(info.get(), kMaxFlatpakInfo).value_or("");
  std::string_view rest = text;
  bool inApplication = false;
  while (!rest.empty()) {
    const std::string_view line = take(rest, '\n');
    if (line.starts_with('[')) inApplication = line == "[Application]";
    if (inApplication && line.starts_with("name=")) return std::string(line.substr(5));
  }
  return {};
}

std::string Process::securityLabel() const {
  std::string text = read("attr/apparmor/current");
  if (text.empty()) text = read("attr/current");
  return text.substr(0, text.find_first_of(" \n"));
}

std::string Process::read(const char* file) const {
  return readFile(folder_ + file, kMaxFile).value_or("");
}

std::string Process::link(const char* file) const {
  std::array<char, PATH_MAX> target;
  const ssize_t size = readlink((folder_ + file).c_str(), target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : std::string();
}

}  // namespace tarnwick::desktop
