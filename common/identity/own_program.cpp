#include "common/identity/own_program.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace tarnwick::desktop {

namespace fs = std::filesystem;

namespace {

constexpr const char* ownExecutable = "/proc/self/exe";

bool isProgram(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(path.c_str(), X_OK) == 0;
}

bool isThisProgram(const std::string& path) {
  struct stat info {};
  struct stat own {};
  return stat(path.c_str(), &info) == 0 && stat(ownExecutable, &own) == 0 &&
         info.st_dev == own.st_dev && info.st_ino == own.st_ino;
}

}  // namespace

std::string findProgram(std::string_view name) {
  if (name.find('/') != name.npos) return isProgram(std::string(name)) ? std::string(name) : "";
  const char* const variable = std::getenv("PATH");
  std::string_view folders = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
  while (!name.empty() && !folders.empty()) {
    const auto end = folders.find(':');
    const auto folder = folders.substr(0, end);
    folders.remove_prefix(end == folders.npos ? folders.size() : end + 1);
    std::string path(folder.empty() ? "." : folder);
    path.append("/").append(name);
    if (isProgram(path)) return path;
  }
  return {};
}

// The first argument is whatever the starter chose to say; the kernel knows better when it names
// something else.
std::string startedFrom(const char* argument0) {
  std::error_code error;
  if (argument0) {
    const fs::path told = fs::absolute(findProgram(argument0), error);
    if (!error && isThisProgram(told)) return told.lexically_normal();
  }
  return fs::read_symlink(ownExecutable, error);
}

void replaceProcess(const std::string& program, char** arguments) {
  execv(program.c_str(), arguments);
  execv(ownExecutable, arguments);
}

}  // namespace tarnwick::desktop
