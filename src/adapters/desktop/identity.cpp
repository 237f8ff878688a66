#include "adapters/desktop/identity.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

#include "adapters/desktop/application_search.h"
#include "adapters/desktop/desktop_entries.h"
#include "adapters/desktop/process.h"
#include "adapters/desktop/utf8.h"

namespace tarnwick::desktop {

namespace {

// Beyond this many processes the dead are forgotten, and if that is not enough, all.
constexpr std::size_t kMaxKnown = 256;
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
  return identity;
}

}  // namespace

IdentityResolver::IdentityResolver(
    std::function<std::vector<WindowHints>(std::int32_t)> windowHints, std::string procRoot)
    : windowHints_(std::move(windowHints)),
      procRoot_(std::move(procRoot)),
      entries_(std::make_unique<DesktopEntries>()) {}

IdentityResolver::~IdentityResolver() = default;

std::optional<ApplicationIdentity> IdentityResolver::identify(std::int32_t pid) {
  if (pid <= 0) return std::nullopt;
  const auto known = known_.find(pid);
  if (known != known_.end() && known->second.handle && !ended(known->second.handle)) {
    return known->second.identity;
  }
  // The handle is taken before anything is read, so that both are of the same process.
  Known fresh;
  if (procRoot_ == "/proc") {
    fresh.handle = UniqueFd(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
  }
  const std::optional<Process::Stat> stat = Process(procRoot_, pid).stat();
  if (!stat) {
    known_.erase(pid);
    return std::nullopt;
  }
  if (known != known_.end() && known->second.startTime == stat->startTime) {
    return known->second.identity;
  }
  entries_->refresh();
  fresh.startTime = stat->startTime;
  fresh.identity = clean(ApplicationSearch(*entries_, windowHints_, procRoot_).find(pid, *stat));
  forgetEnded();
  return known_.insert_or_assign(pid, std::move(fresh)).first->second.identity;
}

std::string IdentityResolver::executable(std::int32_t pid) const {
  return pid > 0 ? Process(procRoot_, pid).verifiedExecutable() : std::string();
}

void IdentityResolver::forgetEnded() {
  if (known_.size() < kMaxKnown) return;
  std::erase_if(
      known_, [](const auto& entry) { return !entry.second.handle || ended(entry.second.handle); });
  if (known_.size() >= kMaxKnown) known_.clear();
}

}  // namespace tarnwick::desktop
