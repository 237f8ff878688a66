#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "common/base/callback_list.h"
#include "common/files/file_watch.h"
#include "common/files/json_file.h"
#include "core/ports/defaults_store.h"

namespace tarnwick::desktop {

// The user's settings as one JSON object: strings, booleans, integers and string arrays as
// themselves, bytes as {"$data": "<base64>"}. Values of any other type read as absent and stay in
// the file; one that is set anew is kept under "damaged.<key>" ("damaged-2.<key>", ...). While the
// file cannot be read or is being written in place, the last document read from it holds; without
// one it reads as empty.
class DefaultsFile : public DefaultsStore {
 public:
  // $XDG_CONFIG_HOME/tarnwick/defaults.json
  static std::filesystem::path standardPath();

  explicit DefaultsFile(std::filesystem::path path = standardPath());

  std::optional<DefaultsValue> value(const std::string& key) const override;
  bool set(const std::string& key, DefaultsValue value) override;
  bool remove(const std::string& key) override;
  std::vector<std::string> keys() const override;
  bool contains(const std::string& key) const override;
  Registration onChanged(std::function<void()> callback) override;

  // The file may have changed when this descriptor can be read; checkForChange() is then to be
  // called, which tells the observers if it has. -1 when the system gives none.
  int descriptor() const { return watch_.descriptor(); }
  void checkForChange();

 private:
  // Tells one state of the file from the next without reading it.
  struct Stamp {
    ino_t inode = 0;
    off_t size = -1;
    std::int64_t changed = 0;  // nanoseconds; of contents, name or mode
    bool operator==(const Stamp&) const = default;
  };

  const nlohmann::json& present() const;
  Stamp stamp() const;

  JsonFile file_;
  mutable nlohmann::json document_;
  mutable std::optional<Stamp> stamp_;  // of the file that document_ was read from
  FileWatch watch_;
  nlohmann::json told_;  // what the observers know
  CallbackList changed_;
};

}  // namespace tarnwick::desktop
