#include "bar/access/access_store.h"

#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace tarnwick::bar {

namespace {

AccessStore::Grants grantsOf(const nlohmann::json& document) {
  AccessStore::Grants grants;
  if (!document.is_object()) return grants;
  for (const auto& [executable, names] : document.items()) {
    if (!names.is_array()) continue;
    for (const auto& name : names) {
      if (!name.is_string()) continue;
      const auto capability =
          capabilityOf(QString::fromStdString(name.get_ref<const std::string&>()));
      if (capability) grants[executable].insert(*capability);
    }
  }
  return grants;
}

}  // namespace

AccessStore::AccessStore(desktop::JsonFile file, GrantTimes times, QObject* parent)
    : QObject(parent), file_(std::move(file)), times_(std::move(times)) {
  times_.check(file_.path());
  refresh();
}

bool AccessStore::allows(const std::string& executable, Capability capability) {
  refresh();
  const auto found = grants_.find(executable);
  return found != grants_.end() && found->second.count(capability) != 0;
}

const AccessStore::Grants& AccessStore::grants() {
  refresh();
  return grants_;
}

bool AccessStore::grant(const std::string& executable, Capability capability) {
  return edit(executable, capability, true);
}

bool AccessStore::revoke(const std::string& executable, Capability capability) {
  return edit(executable, capability, false);
}

bool AccessStore::edit(const std::string& executable, Capability capability, bool granted) {
  if (executable.empty()) return false;
  const std::string name = toName(capability).toStdString();
  const bool written = file_.update([&](nlohmann::json& document) {
    if (!document.is_object()) document = nlohmann::json::object();
    nlohmann::json& names = document[executable];
    if (!names.is_array()) names = nlohmann::json::array();
    const auto found = std::find(names.begin(), names.end(), name);
    if (granted && found == names.end()) names.push_back(name);
    if (!granted && found != names.end()) names.erase(found);
    if (names.empty()) document.erase(executable);
    return true;
  });
  if (written && granted) times_.granted(executable, capability);
  refresh();
  return written;
}

void AccessStore::refresh() {
  const Stamp now = stamp();
  if (now == stamp_) return;
  stamp_ = now;
  // An empty file is one that somebody is writing in place: not to be kept aside as damaged.
  take(now.size == 0 ? Grants{} : grantsOf(file_.read()));
  times_.confirm(file_.path());
}

AccessStore::Stamp AccessStore::stamp() const {
  struct stat status = {};
  if (stat(file_.path().c_str(), &status) != 0) return {};
  return {true, status.st_ino, status.st_size,
          std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

void AccessStore::take(Grants grants) {
  const Grants before = std::exchange(grants_, std::move(grants));
  const auto missingIn = [](const Grants& one, const Grants& other) {
    std::vector<std::pair<std::string, Capability>> missing;
    for (const auto& [executable, capabilities] : one) {
      const auto found = other.find(executable);
      for (const Capability capability : capabilities) {
        if (found == other.end() || found->second.count(capability) == 0) {
          missing.emplace_back(executable, capability);
        }
      }
    }
    return missing;
  };
  const auto taken = missingIn(before, grants_);
  const auto given = missingIn(grants_, before);
  for (const auto& [executable, capability] : taken) {
    times_.revoked(executable, capability);
    emit changed(executable, capability, false);
  }
  for (const auto& [executable, capability] : given) emit changed(executable, capability, true);
}

}  // namespace tarnwick::bar
