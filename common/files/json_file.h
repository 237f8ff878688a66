#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <utility>

namespace tarnwick::desktop {

// What the outermost value must be; a document of another shape counts as damaged.
enum class JsonRoot { any, object, array };

// One JSON document on disk that several processes may read and write.
class JsonFile {
 public:
  // A bad file that was changed less than `settleTime` ago may be in the middle of being written in
  // place: it is left alone and read again later.
  explicit JsonFile(std::filesystem::path path, JsonRoot root = JsonRoot::any,
                    std::chrono::nanoseconds settleTime = std::chrono::seconds(1))
      : path_(std::move(path)), root_(root), settleTime_(settleTime) {}

  const std::filesystem::path& path() const { return path_; }

  // The present document; null when the file is missing, unreadable or damaged (no JSON, of another
  // root than asked for, beyond 16 MiB or 64 levels). A damaged file is renamed to "<name>.damaged"
  // ("<name>.damaged-2", ...) beside it, so that it is never lost, once it has settled.
  nlohmann::json read() const;

  // The same, but absent when what the file holds cannot be told now: no access, no resources, or
  // bad and not settled.
  std::optional<nlohmann::json> tryRead() const;

  // Reads the document under the file's lock, lets `change` edit it and writes it whole (temporary
  // file in the same folder, fsync, rename; folders are made as needed) when `change` returns true.
  // False when it was not written, as when the present file is unreadable or bad and not settled;
  // the stored document is then as it was. A symbolic link is written through to the file it names.
  // Waits at most 0.5 s for other writers.
  bool update(const std::function<bool(nlohmann::json&)>& change) const;

 private:
  std::filesystem::path path_;
  JsonRoot root_;
  std::chrono::nanoseconds settleTime_;
};

// XDG base directories of this process: the environment's value when it is an absolute path, else
// the default below $HOME.
std::filesystem::path configHome();
std::filesystem::path dataHome();
std::filesystem::path stateHome();

}  // namespace tarnwick::desktop
