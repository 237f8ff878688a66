#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

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
  // Written at once; a write that fails leaves the stored value as it was.
  virtual void set(const std::string& key, DefaultsValue value) = 0;
  virtual void remove(const std::string& key) = 0;
  // Also of values that cannot be read: contains() tells those from missing ones.
  virtual std::vector<std::string> keys() const = 0;
  virtual bool contains(const std::string& key) const = 0;
};

}  // namespace tarnwick
