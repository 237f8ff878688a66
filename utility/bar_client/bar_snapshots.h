#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "core/ports/accessibility.h"
#include "utility/bar_client/bar_connection.h"

namespace tarnwick {

// The bar's items at one moment. Empty when the bar did not tell.
class BarPicture {
 public:
  explicit BarPicture(std::vector<BarItem> items);

  const std::vector<BarItem>& items() const { return items_; }
  const BarItem* find(std::uint64_t id) const;                 // nullptr when not there
  std::vector<std::uint64_t> itemsOf(std::int32_t pid) const;  // in the bar's order

 private:
  std::vector<BarItem> items_;
  // Sorted; a scan asks for every item and every owner.
  std::vector<std::pair<std::uint64_t, std::size_t>> byId_;  // id, place in items_
  std::vector<std::pair<std::int32_t, std::size_t>> byPid_;  // owner, place in items_
};

// The one picture of the bar that reads of items, frames and applications are answered from while
// snapshots live; without one every read takes a picture of its own.
class BarSnapshots {
 public:
  explicit BarSnapshots(BarConnection& bar) : bar_(bar) {}

  std::unique_ptr<Accessibility::Snapshot> take();
  std::shared_ptr<const BarPicture> present();
  std::shared_ptr<const BarPicture> living() const { return living_.lock(); }  // or nullptr

 private:
  BarConnection& bar_;
  std::weak_ptr<const BarPicture> living_;
};

}  // namespace tarnwick
