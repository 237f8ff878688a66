#pragma once

#include <QObject>
#include <map>
#include <set>
#include <string>

#include "bar/access/capability.h"
#include "bar/access/grant_times.h"
#include "common/files/json_file.h"

namespace tarnwick::bar {

// Who has been allowed what, by executable: one JSON object, absolute path of the executable to an
// array of capability names. The file is looked at again before every answer, so that an edit of it
// counts at once.
class AccessStore : public QObject {
  Q_OBJECT

 public:
  using Grants = std::map<std::string, std::set<Capability>>;

  AccessStore(desktop::JsonFile file, GrantTimes times, QObject* parent = nullptr);

  const std::filesystem::path& path() const { return file_.path(); }

  bool allows(const std::string& executable, Capability capability);
  const Grants& grants();
  // When the user allowed it; absent when that is not known.
  std::optional<std::chrono::sys_seconds> since(const std::string& executable,
                                                Capability capability) const {
    return times_.since(executable, capability);
  }

  // False when it could not be written; nothing has changed then.
  bool grant(const std::string& executable, Capability capability);
  bool revoke(const std::string& executable, Capability capability);

  // Reads the file if it has changed on disk.
  void refresh();

 signals:
  void changed(const std::string& executable, tarnwick::bar::Capability capability, bool granted);

 private:
  // What tells one state of the file from another.
  struct Stamp {
    bool exists = false;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t changedAt = 0;  // nanoseconds
    bool operator==(const Stamp&) const = default;
  };

  Stamp stamp() const;
  void take(Grants grants);
  bool edit(const std::string& executable, Capability capability, bool granted);

  desktop::JsonFile file_;
  GrantTimes times_;
  Stamp stamp_;
  Grants grants_;
};

}  // namespace tarnwick::bar
