#include "utility/bar_client/bar_workspace.h"

#include <unistd.h>

#include <QTimer>
#include <utility>

#include "common/identity/process.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr auto firstLook = 1500ms;  // once the start has settled

// Clock ticks since boot; absent once the process has ended.
std::optional<std::uint64_t> startOf(std::int32_t pid) {
  const auto stat = desktop::Process("/proc", pid).stat();
  return stat ? std::optional(stat->startTime) : std::nullopt;
}

}  // namespace

BarWorkspace::BarWorkspace(BarConnection& bar, BarSnapshots& snapshots,
                           desktop::IdentityResolver& identities, std::string ownIdentifier,
                           std::function<std::set<std::int32_t>()> windowOwners)
    : snapshots_(snapshots),
      identities_(identities),
      ownIdentifier_(std::move(ownIdentifier)),
      windowOwners_(std::move(windowOwners)) {
  connect(&bar, &BarConnection::applicationAppeared, this, [this](int pid) {
    rememberOwners({pid});
    if (pid != getpid() && isNews(pid)) launched_.notify();
  });
  connect(&bar, &BarConnection::vanished, this, [this] { known_.clear(); });  // ids begin anew
  // The first look at every process takes a while; better now than at the panel's first opening.
  QTimer::singleShot(firstLook, this, [this] { everyApplication(); });
}

// A client that takes its item away and brings it back without end is news once a second.
bool BarWorkspace::isNews(int pid) {
  const auto now = std::chrono::steady_clock::now();
  std::erase_if(announced_, [now](const auto& entry) { return now - entry.second >= 1s; });
  return announced_.emplace(pid, now).second;
}

std::vector<RunningApplication> BarWorkspace::runningApplications() {
  const auto bar = snapshots_.living();
  return bar ? itemOwners(*bar) : everyApplication();
}

std::vector<RunningApplication> BarWorkspace::itemOwners(const BarPicture& bar) {
  if (const auto revision = identities_.revision(); std::exchange(revision_, revision) != revision)
    known_.clear();
  std::unordered_map<std::int32_t, std::shared_ptr<const RunningApplication>> byPid;
  for (const BarItem& item : bar.items()) {
    if (const auto found = known_.find(item.id); found != known_.end()) {
      byPid.emplace(item.pid, found->second);
    }
  }
  std::vector<std::int32_t> unknown;
  for (const BarItem& item : bar.items()) {
    if (item.pid != 0 && byPid.emplace(item.pid, nullptr).second) unknown.push_back(item.pid);
  }
  if (!unknown.empty()) {
    auto identities = identities_.identify(unknown);
    for (std::size_t i = 0; i < unknown.size(); ++i) {
      byPid[unknown[i]] =
          std::make_shared<RunningApplication>(describe(unknown[i], std::move(identities[i])));
    }
    rememberOwners(unknown);
  }
  known_.clear();
  std::vector<RunningApplication> applications;
  std::set<std::int32_t> listed;
  for (const BarItem& item : bar.items()) {
    if (item.pid == 0) continue;
    const auto& application = known_[item.id] = byPid[item.pid];
    if (listed.insert(item.pid).second) applications.push_back(*application);
  }
  return applications;
}

void BarWorkspace::rememberOwners(const std::vector<std::int32_t>& pids) {
  std::erase_if(owners_, [](const auto& owner) { return startOf(owner.first) != owner.second; });
  for (const std::int32_t pid : pids) {
    if (const auto start = startOf(pid)) owners_.insert_or_assign(pid, *start);
  }
}

std::vector<RunningApplication> BarWorkspace::everyApplication() {
  rememberOwners({});
  std::set<std::int32_t> itemOwners;
  for (const auto& owner : owners_) itemOwners.insert(owner.first);
  const std::vector<std::int32_t> pids =
      processes_.list(itemOwners, windowOwners_ ? windowOwners_() : std::set<std::int32_t>());
  std::vector<RunningApplication> applications;
  std::unordered_map<std::string, std::size_t> places;  // by identifier
  auto identities = identities_.identify(pids);
  for (std::size_t i = 0; i < pids.size(); ++i) {
    if (!identities[i]) continue;
    const auto [place, isNew] = places.emplace(identities[i]->bundleId, applications.size());
    if (isNew) {
      applications.push_back(describe(pids[i], std::move(identities[i])));
    } else if (auto& first = applications[place->second];
               !first.localizedName && !identities[i]->name.empty()) {
      first = describe(pids[i], std::move(identities[i]));  // that of its processes with a window
    }
  }
  return applications;
}

// Whatever runs has a picture: without one of its own, one under its other names.
RunningApplication BarWorkspace::describe(
    std::int32_t pid, std::optional<desktop::ApplicationIdentity> identity) const {
  RunningApplication application;
  application.processIdentifier = pid;
  if (pid == getpid()) {
    application.bundleIdentifier = ownIdentifier_;
    return application;
  }
  if (!identity) return application;
  application.bundleIdentifier = std::move(identity->bundleId);
  if (!identity->name.empty()) application.localizedName = std::move(identity->name);
  application.icon = ThemeIcon{std::move(identity->icon), std::move(identity->otherIcons)};
  return application;
}

Registration BarWorkspace::onApplicationLaunched(std::function<void()> callback) {
  return launched_.add(std::move(callback));
}

}  // namespace tarnwick
