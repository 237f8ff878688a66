#include "utility/session/defaults_file.h"

#include <sys/stat.h>

#include <ctime>
#include <utility>

#include "common/files/base64.h"

namespace tarnwick::desktop {

using nlohmann::json;

namespace {

constexpr const char* kDataKey = "$data";

// Clocks of file systems tick in steps of up to this; within one, a file may change unseen.
constexpr std::int64_t kClockStep = 20'000'000;  // nanoseconds

std::int64_t nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

std::optional<DefaultsValue> decode(const json& stored) {
  switch (stored.type()) {
    case json::value_t::boolean:
      return stored.get<bool>();
    case json::value_t::string:
      return stored.get<std::string>();
    case json::value_t::number_integer:
      return stored.get<std::int64_t>();
    case json::value_t::number_unsigned:
      if (stored.get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
      return stored.get<std::int64_t>();
    case json::value_t::array: {
      std::vector<std::string> strings;
      for (const json& element : stored) {
        if (!element.is_string()) return std::nullopt;
        strings.push_back(element.get<std::string>());
      }
      return strings;
    }
    case json::value_t::object: {
      const auto data = stored.find(kDataKey);
      if (stored.size() != 1 || data == stored.end() || !data->is_string()) return std::nullopt;
      std::optional<std::string> bytes = decodeBase64(data->get_ref<const std::string&>());
      if (!bytes) return std::nullopt;
      return DefaultsData{std::move(*bytes)};
    }
    default:
      return std::nullopt;
  }
}

json encode(const DefaultsValue& value) {
  return std::visit(
      [](const auto& plain) -> json {
        if constexpr (std::is_same_v<std::decay_t<decltype(plain)>, DefaultsData>) {
          return {{kDataKey, encodeBase64(plain.bytes)}};
        } else {
          return plain;
        }
      },
      value);
}

// Keeps a value that nobody here can read under a key of its own, so that it is not lost.
void keepAside(json& document, const std::string& key, const json& stored) {
  std::string aside = "damaged." + key;
  for (int i = 2; document.contains(aside); ++i) {
    aside = "damaged-" + std::to_string(i) + '.' + key;
  }
  document[aside] = stored;
}

}  // namespace

std::filesystem::path DefaultsFile::standardPath() {
  return configHome() / "tarnwick" / "defaults.json";
}

DefaultsFile::DefaultsFile(std::filesystem::path path)
    : file_(std::move(path), JsonRoot::object), watch_(file_.path()) {}

DefaultsFile::Stamp DefaultsFile::stamp() const {
  struct stat info {};
  if (::stat(file_.path().c_str(), &info) != 0) return {};
  return {info.st_ino, info.st_size, nanoseconds(info.st_ctim)};
}

const json& DefaultsFile::present() const {
  const Stamp now = stamp();
  if (stamp_ == now) return document_;
  std::optional<json> read = file_.tryRead();
  if (!read) {
    // Nothing was learnt: the last good document holds, and the file is read again next time.
    stamp_.reset();
    return document_;
  }
  document_ = std::move(*read);
  // A file written this very moment is read again next time: its next state may bear the same
  // stamp.
  timespec clock{};
  clock_gettime(CLOCK_REALTIME, &clock);
  if (now.size >= 0 && nanoseconds(clock) - now.changed < kClockStep) {
    stamp_.reset();
  } else {
    stamp_ = now;
  }
  return document_;
}

std::optional<DefaultsValue> DefaultsFile::value(const std::string& key) const {
  const json& document = present();
  const auto entry = document.find(key);
  return entry == document.end() ? std::nullopt : decode(*entry);
}

bool DefaultsFile::set(const std::string& key, DefaultsValue value) {
  if (this->value(key) == value) return true;
  bool there = false;  // another process has just written it
  const bool written = file_.update([&](json& document) {
    json& entry = document[key];
    there = decode(entry) == value;
    if (there) return false;
    if (!entry.is_null() && !decode(entry)) keepAside(document, key, entry);
    entry = encode(value);
    return true;
  });
  return written || there;
}

bool DefaultsFile::remove(const std::string& key) {
  if (!present().contains(key)) return true;
  bool gone = false;
  const bool written = file_.update([&](json& document) {
    gone = !document.is_object() || document.erase(key) == 0;
    return !gone;
  });
  return written || gone;
}

Registration DefaultsFile::onChanged(std::function<void()> callback) {
  if (changed_.empty()) told_ = present();
  return changed_.add(std::move(callback));
}

void DefaultsFile::checkForChange() {
  watch_.rearm();
  if (changed_.empty() || present() == told_) return;
  told_ = present();
  changed_.notify();
}

std::vector<std::string> DefaultsFile::keys() const {
  std::vector<std::string> keys;
  for (const auto& [key, stored] : present().items()) keys.push_back(key);
  return keys;
}

bool DefaultsFile::contains(const std::string& key) const {
  return present().contains(key);
}

}  // namespace tarnwick::desktop
