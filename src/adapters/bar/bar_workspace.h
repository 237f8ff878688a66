#pragma once

#include <QObject>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include "adapters/bar/bar_connection.h"
#include "adapters/bar/bar_snapshots.h"
#include "adapters/desktop/identity.h"
#include "platform/callback_list.h"
#include "platform/workspace.h"

namespace tarnwick {

// The applications that own status items, in the order in which they appeared in the bar.
class BarWorkspace : public QObject, public Workspace {
  Q_OBJECT

 public:
  // `ownIdentifier` names this process.
  BarWorkspace(BarConnection& bar, BarSnapshots& snapshots, desktop::IdentityResolver& identities,
               std::string ownIdentifier);

  std::vector<RunningApplication> runningApplications() override;
  Registration onApplicationLaunched(std::function<void()> callback) override;

 private:
  RunningApplication describe(std::int32_t pid);
  bool isNews(int pid);

  BarSnapshots& snapshots_;
  desktop::IdentityResolver& identities_;
  const std::string ownIdentifier_;
  CallbackList launched_;
  std::map<int, std::chrono::steady_clock::time_point> announced_;  // within the last second
  // By status item: as long as an item stands in the bar its owner is the same process, so that
  // only new items' owners are looked up.
  std::unordered_map<std::uint64_t, std::shared_ptr<const RunningApplication>> known_;
};

}  // namespace tarnwick
