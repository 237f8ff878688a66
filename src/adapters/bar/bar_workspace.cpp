#include "adapters/bar/bar_workspace.h"

#include <unistd.h>

#include <utility>

namespace tarnwick {

using namespace std::chrono_literals;

BarWorkspace::BarWorkspace(BarConnection& bar, BarSnapshots& snapshots,
                           desktop::IdentityResolver& identities, std::string ownIdentifier)
    : snapshots_(snapshots), identities_(identities), ownIdentifier_(std::move(ownIdentifier)) {
  connect(&bar, &BarConnection::applicationAppeared, this, [this](int pid) {
    if (pid != getpid() && isNews(pid)) launched_.notify();
  });
  connect(&bar, &BarConnection::vanished, this, [this] { known_.clear(); });  // ids begin anew
}

// A client that takes its item away and brings it back without end is news once a second.
bool BarWorkspace::isNews(int pid) {
  const auto now = std::chrono::steady_clock::now();
  std::erase_if(announced_, [now](const auto& entry) { return now - entry.second >= 1s; });
  return announced_.emplace(pid, now).second;
}

std::vector<RunningApplication> BarWorkspace::runningApplications() {
  const auto bar = snapshots_.present();
  std::vector<RunningApplication> applications;
  std::unordered_map<std::int32_t, std::shared_ptr<const RunningApplication>> byPid;
  decltype(known_) stillThere;
  for (const BarItem& item : bar->items()) {
    if (item.pid == 0) continue;
    auto& application = byPid[item.pid];
    if (!application) {
      const auto found = known_.find(item.id);
      application = found != known_.end()
                        ? found->second
                        : std::make_shared<RunningApplication>(describe(item.pid));
      applications.push_back(*application);
    }
    stillThere.emplace(item.id, application);
  }
  known_ = std::move(stillThere);
  return applications;
}

RunningApplication BarWorkspace::describe(std::int32_t pid) {
  RunningApplication application;
  application.processIdentifier = pid;
  if (pid == getpid()) {
    application.bundleIdentifier = ownIdentifier_;
    return application;
  }
  auto identity = identities_.identify(pid);
  if (!identity) return application;
  application.bundleIdentifier = std::move(identity->bundleId);
  if (!identity->name.empty()) application.localizedName = std::move(identity->name);
  if (!identity->icon.empty()) application.icon = ThemeIcon{std::move(identity->icon)};
  return application;
}

Registration BarWorkspace::onApplicationLaunched(std::function<void()> callback) {
  return launched_.add(std::move(callback));
}

}  // namespace tarnwick
