#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "common/base/registration.h"

namespace tarnwick {

// Raw bytes, kept apart from strings.
struct DefaultsData {
  std::string bytes;
  bool operator==(const DefaultsData&) const = default;
};

using DefaultsValue =
    std::variant<bool, std::int64_t, std::string, std::vector<std::string>, DefaultsData>;

// The user's settings: a flat map of typed values that outlives the process. Every read is of the
// store's present contents, also when another process wrote them.
class DefaultsStore {
 public:
  virtual ~DefaultsStore() = default;

  // Absent when the key is missing or holds something that is none of the types above.
  virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;
  // Written at once. False when the write failed; the stored value is then as it was.
  virtual bool set(const std::string& key, DefaultsValue value) = 0;
  virtual bool remove(const std::string& key) = 0;
  // Also of values that cannot be read: contains() tells those from missing ones.
  virtual std::vector<std::string> keys() const = 0;
  virtual bool contains(const std::string& key) const = 0;

  // Called in a later turn of the main thread after the stored values have changed by whatever
  // hand, this process's own writes included; once for changes that come together.
  virtual Registration onChanged(std::function<void()> callback) = 0;
};

}  // namespace tarnwick
