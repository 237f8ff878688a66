#include "common/identity/identity.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

#include "common/files/utf8.h"
#include "common/identity/application_search.h"
#include "common/identity/desktop_entries.h"
#include "common/identity/process.h"

namespace tarnwick::desktop {

namespace {

// If so many processes live, all are forgotten.
constexpr std::size_t kMaxKnown = 4096;
// So many are watched by a handle; of others the start time is compared.
constexpr std::size_t kMaxHandles = 256;
constexpr std::size_t kMaxOtherIcons = 16;
constexpr std::size_t kMaxText = 1000;  // bytes of a name

bool ended(const UniqueFd& handle) {
  pollfd state{handle.get(), POLLIN, 0};
  return poll(&state, 1, 0) != 0;
}

ApplicationIdentity clean(ApplicationIdentity identity) {
  for (std::string* text : {&identity.bundleId, &identity.name, &identity.icon}) {
    *text = validUtf8(*text, kMaxText);
    text->shrink_to_fit();
  }
  if (identity.otherIcons.size() > kMaxOtherIcons) identity.otherIcons.resize(kMaxOtherIcons);
  for (std::string& name : identity.otherIcons) name = validUtf8(name, kMaxText);
  return identity;
}

}  // namespace

IdentityResolver::IdentityResolver(WindowHintsOf windowHints, std::string procRoot,
                                   BusNamesOf busNames)
    : windowHints_(std::move(windowHints)),
      busNames_(std::move(busNames)),
      procRoot_(std::move(procRoot)),
      entries_(std::make_unique<DesktopEntries>()) {}

IdentityResolver::~IdentityResolver() = default;

std::uint64_t IdentityResolver::revision() {
  if (entries_->refresh()) entriesRevision_ = ++revision_;
  return revision_;
}

std::optional<ApplicationIdentity> IdentityResolver::identify(std::int32_t pid) {
  revision();
  return lookUp(pid);
}

std::vector<std::optional<ApplicationIdentity>> IdentityResolver::identify(
    const std::vector<std::int32_t>& pids) {
  revision();
  std::vector<std::optional<ApplicationIdentity>> identities;
  identities.reserve(pids.size());
  for (const std::int32_t pid : pids) identities.push_back(lookUp(pid));
  forgetEnded();
  return identities;
}

std::optional<ApplicationIdentity> IdentityResolver::lookUp(std::int32_t pid) {
  if (pid <= 0) return std::nullopt;
  const Process process(procRoot_, pid);
  std::string executable = process.executable();
  const auto found = known_.find(pid);
  // A start script may have become the application, a launcher's child what it was to launch.
  Known* known =
      found != known_.end() && found->second.executable == executable ? &found->second : nullptr;
  const bool watched = known && known->handle && !ended(known->handle);
  if (watched && isCurrent(pid, *known)) return known->identity;
  // The handle is taken before anything is read, so that both are of the same process.
  Known fresh;
  if (watched) {
    fresh.handle = std::move(known->handle);
  } else if (procRoot_ == "/proc" && known_.size() < kMaxHandles) {
    fresh.handle = UniqueFd(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
  }
  const std::optional<Process::Stat> stat = process.stat();
  if (!stat) {
    known_.erase(pid);
    return std::nullopt;
  }
  if (known && known->startTime != stat->startTime) known = nullptr;  // the id's former process
  if (known && isCurrent(pid, *known)) return known->identity;
  auto answer = ApplicationSearch(*entries_, windowHints_, busNames_, procRoot_).find(pid, *stat);
  fresh.identity = clean(std::move(answer.identity));
  // What was hidden under a sure id stays under it, whatever is uninstalled meanwhile.
  const bool keeps =
      known && !known->guessed && known->identity.bundleId != fresh.identity.bundleId;
  if (keeps) fresh.identity = known->identity;
  fresh.guessed = answer.guessed && !keeps;
  fresh.startTime = stat->startTime;
  fresh.executable = std::move(executable);
  fresh.revision = revision_;
  fresh.entriesRevision = entriesRevision_;
  if (known_.size() >= kMaxHandles && known_.size() % kMaxHandles == 0) forgetEnded();
  return known_.insert_or_assign(pid, std::move(fresh)).first->second.identity;
}

// Whether a new search would find nothing else than the last one.
bool IdentityResolver::isCurrent(std::int32_t pid, Known& known) {
  if (known.revision == revision_) return true;
  if (known.entriesRevision != entriesRevision_) return false;
  const bool nothingTold =
      (!windowHints_ || windowHints_(pid).empty()) && (!busNames_ || busNames_(pid).empty());
  if (!known.guessed || nothingTold) known.revision = revision_;
  return known.revision == revision_;
}

std::string IdentityResolver::executable(std::int32_t pid) const {
  return pid > 0 ? Process(procRoot_, pid).verifiedExecutable() : std::string();
}

void IdentityResolver::forgetEnded() {
  std::erase_if(known_, [this](const auto& entry) {
    const auto& [pid, known] = entry;
    if (known.handle) return ended(known.handle);
    const auto stat = Process(procRoot_, pid).stat();
    return !stat || stat->startTime != known.startTime;
  });
  if (known_.size() >= kMaxKnown) known_.clear();
}

}  // namespace tarnwick::desktop
