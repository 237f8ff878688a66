#include "common/files/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace tarnwick::desktop {

namespace fs = std::filesystem;

UniqueFd::~UniqueFd() {
  if (fd_ >= 0) close(fd_);
}

std::optional<std::string> readAll(int fd, std::size_t limit) {
  std::string bytes;
  std::size_t used = 0;
  for (;;) {
    // One byte more than allowed tells a file that is too long from one that just fits.
    if (used == bytes.size())
      bytes.resize(std::min(limit + 1, std::max<std::size_t>(4096, 2 * used)));
    if (used == bytes.size()) return std::nullopt;
    const ssize_t got = read(fd, bytes.data() + used, bytes.size() - used);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    used += static_cast<std::size_t>(got);
  }
  if (used > limit) return std::nullopt;
  bytes.resize(used);
  return bytes;
}

std::optional<std::string> readFile(const std::string& path, std::size_t limit) {
  const UniqueFd fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (!fd || fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  return readAll(fd.get(), limit);
}

fs::path linkTarget(fs::path file) {
  constexpr int mostLinks = 40;
  std::error_code error;
  for (int i = 0; i < mostLinks && fs::is_symlink(fs::symlink_status(file, error)); ++i) {
    const fs::path next = fs::read_symlink(file, error);
    if (error) break;
    file = file.parent_path() / next;
  }
  return file;
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = write(fd, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

bool replaceFile(const std::string& path, const std::string& temporary, std::string_view bytes,
                 unsigned mode) {
  unlink(temporary.c_str());
  {
    const UniqueFd fd(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!fd) return false;
    if (!writeAll(fd.get(), bytes) || fchmod(fd.get(), mode) != 0 || fsync(fd.get()) != 0) {
      unlink(temporary.c_str());
      return false;
    }
  }
  if (rename(temporary.c_str(), path.c_str()) != 0) {
    unlink(temporary.c_str());
    return false;
  }
  const auto slash = path.rfind('/');
  const std::string folder = slash == path.npos ? "." : path.substr(0, slash + 1);
  const UniqueFd opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened) fsync(opened.get());
  return true;
}

}  // namespace tarnwick::desktop
