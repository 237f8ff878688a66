#pragma once

#include <QObject>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/base/callback_list.h"
#include "common/identity/identity.h"
#include "common/identity/session_processes.h"
#include "core/ports/workspace.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"

namespace tarnwick {

// The applications of this session by its processes and windows. The bar is asked for its items
// only when a snapshot of them lives anyway.
class BarWorkspace : public QObject, public Workspace {
  Q_OBJECT

 public:
  // `ownIdentifier` names this process. `windowOwners`, if given, tells the processes that have
  // windows.
  BarWorkspace(BarConnection& bar, BarSnapshots& snapshots, desktop::IdentityResolver& identities,
               std::string ownIdentifier,
               std::function<std::set<std::int32_t>()> windowOwners = {});

  std::vector<RunningApplication> runningApplications() override;
  Registration onApplicationLaunched(std::function<void()> callback) override;

 private:
  std::vector<RunningApplication> itemOwners(const BarPicture& bar);
  std::vector<RunningApplication> everyApplication();
  RunningApplication describe(std::int32_t pid,
                              std::optional<desktop::ApplicationIdentity> identity) const;
  bool isNews(int pid);
  // Adds these and forgets those that have ended.
  void rememberOwners(const std::vector<std::int32_t>& pids);

  BarSnapshots& snapshots_;
  desktop::IdentityResolver& identities_;
  const std::string ownIdentifier_;
  const std::function<std::set<std::int32_t>()> windowOwners_;
  desktop::SessionProcesses processes_;
  // Processes that have had status items and live, by id, with their start times: the id alone may
  // be another's later.
  std::map<std::int32_t, std::uint64_t> owners_;
  CallbackList launched_;
  std::map<int, std::chrono::steady_clock::time_point> announced_;  // within the last second
  // By status item: as long as an item stands in the bar its owner is the same process, so that
  // only new items' owners are looked up, and all when there is something new to be told of them.
  std::unordered_map<std::uint64_t, std::shared_ptr<const RunningApplication>> known_;
  std::uint64_t revision_ = 0;
};

}  // namespace tarnwick
