#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwick::desktop {

// Owns one file descriptor; -1 is none.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : fd_(fd) {}
  ~UniqueFd();
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }

 private:
  int fd_;
};

// Everything up to the end of the file; absent on a read error or beyond `limit` bytes.
std::optional<std::string> readAll(int fd, std::size_t limit);

// The same for a path; absent also when it is no regular file. Never waits for a writer.
std::optional<std::string> readFile(const std::string& path, std::size_t limit);

// The file that a chain of symbolic links names, whether it exists or not.
std::filesystem::path linkTarget(std::filesystem::path file);

bool writeAll(int fd, std::string_view bytes);

// Puts a new file in the place of whatever `path` names: written to `temporary` in the same folder,
// synced and renamed. Nobody else may write there. False when that fails; the file is then as it
// was.
bool replaceFile(const std::string& path, const std::string& temporary, std::string_view bytes,
                 unsigned mode);

}  // namespace tarnwick::desktop
