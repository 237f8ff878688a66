#include "bar/access/grant_times.h"

#include <cstdint>
#include <nlohmann/json.hpp>

namespace tarnwick::bar {

using nlohmann::json;
using std::chrono::sys_seconds;

std::optional<sys_seconds> GrantTimes::since(const std::string& executable,
                                             Capability capability) const {
  if (stale_) return std::nullopt;
  const json document = file_.read();
  if (!document.is_object()) return std::nullopt;
  const auto times = document.find(executable);
  if (times == document.end() || !times->is_object()) return std::nullopt;
  const auto time = times->find(toName(capability).toStdString());
  if (time == times->end() || !time->is_number_integer()) return std::nullopt;
  return sys_seconds(std::chrono::seconds(time->get<std::int64_t>()));
}

void GrantTimes::granted(const std::string& executable, Capability capability) {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  edit([&](json& document) {
    json& times = document[executable];
    if (!times.is_object()) times = json::object();
    times[toName(capability).toStdString()] = std::int64_t{now.time_since_epoch().count()};
  });
}

void GrantTimes::revoked(const std::string& executable, Capability capability) {
  if (!since(executable, capability)) return;
  edit([&](json& document) {
    json& times = document[executable];
    if (times.is_object()) times.erase(toName(capability).toStdString());
    if (times.empty()) document.erase(executable);
  });
}

void GrantTimes::confirm(const std::filesystem::path& grants) {
  if (stale_) return;
  std::error_code error;
  const auto changedAt = std::filesystem::last_write_time(grants, error);
  if (!error) std::filesystem::last_write_time(file_.path(), changedAt, error);
}

void GrantTimes::check(const std::filesystem::path& grants) {
  std::error_code error;
  const auto confirmedAt = std::filesystem::last_write_time(file_.path(), error);
  if (error) return;  // there are none
  if (std::filesystem::last_write_time(grants, error) == confirmedAt && !error) return;
  stale_ = true;
  edit([](json&) {});
}

void GrantTimes::edit(const std::function<void(json&)>& change) {
  stale_ = !file_.update([&](json& document) {
    if (stale_ || !document.is_object()) document = json::object();
    change(document);
    return true;
  });
}

}  // namespace tarnwick::bar
