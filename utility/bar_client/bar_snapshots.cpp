#include "utility/bar_client/bar_snapshots.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

struct HeldPicture : Accessibility::Snapshot {
  explicit HeldPicture(std::shared_ptr<const BarPicture> held) : picture(std::move(held)) {}

  const std::shared_ptr<const BarPicture> picture;
};

}  // namespace

BarPicture::BarPicture(std::vector<BarItem> items) : items_(std::move(items)) {
  byId_.reserve(items_.size());
  byPid_.reserve(items_.size());
  for (std::size_t i = 0; i < items_.size(); ++i) {
    byId_.emplace_back(items_[i].id, i);
    byPid_.emplace_back(items_[i].pid, i);
  }
  std::sort(byId_.begin(), byId_.end());
  std::sort(byPid_.begin(), byPid_.end());
}

const BarItem* BarPicture::find(std::uint64_t id) const {
  const auto found = std::lower_bound(byId_.begin(), byId_.end(), std::pair(id, std::size_t{0}));
  return found != byId_.end() && found->first == id ? &items_[found->second] : nullptr;
}

std::vector<std::uint64_t> BarPicture::itemsOf(std::int32_t pid) const {
  std::vector<std::uint64_t> ids;
  auto next = std::lower_bound(byPid_.begin(), byPid_.end(), std::pair(pid, std::size_t{0}));
  for (; next != byPid_.end() && next->first == pid; ++next) {
    ids.push_back(items_[next->second].id);
  }
  return ids;
}

std::unique_ptr<Accessibility::Snapshot> BarSnapshots::take() {
  auto picture = present();
  living_ = picture;
  return std::make_unique<HeldPicture>(std::move(picture));
}

std::shared_ptr<const BarPicture> BarSnapshots::present() {
  if (auto picture = living()) return picture;
  return std::make_shared<BarPicture>(bar_.items().value_or(std::vector<BarItem>{}));
}

}  // namespace tarnwick
