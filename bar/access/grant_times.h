#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "bar/access/capability.h"
#include "common/files/json_file.h"

namespace tarnwick::bar {

// When the user allowed what: one JSON object, path of the executable to an object of capability
// names with seconds since 1970. For the user to read; nothing depends on it.
class GrantTimes {
 public:
  explicit GrantTimes(desktop::JsonFile file) : file_(std::move(file)) {}

  // Absent for what was not allowed by an answer of the user, but written into the file of grants.
  std::optional<std::chrono::sys_seconds> since(const std::string& executable,
                                                Capability capability) const;
  void granted(const std::string& executable, Capability capability);
  void revoked(const std::string& executable, Capability capability);
  // The times are those of `grants`, the file of grants, as it stands now: marks that by giving
  // their own file its time of change. No effect while they are stale.
  void confirm(const std::filesystem::path& grants);
  // Forgets all times when `grants` was changed since: what was taken meanwhile and given anew
  // cannot be told from the rest.
  void check(const std::filesystem::path& grants);

 private:
  void edit(const std::function<void(nlohmann::json&)>& change);

  desktop::JsonFile file_;
  // The file could not be written and holds what is to be forgotten: nothing of it counts.
  bool stale_ = false;
};

}  // namespace tarnwick::bar
