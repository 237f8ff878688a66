#include "core/settings/store_follower.h"

#include <utility>

#include "core/settings/hiding_choice.h"

namespace tarnwick {

StoreFollower::StoreFollower(DefaultsStore& defaults, std::weak_ptr<MenuBarController> controller)
    : preferences_(defaults),
      controller_(std::move(controller)),
      seen_(read()),
      observer_(defaults.onChanged([this] { follow(); })) {}

void StoreFollower::follow() {
  const auto controller = controller_.lock();
  const Stored before = std::exchange(seen_, read());
  if (!controller || seen_ == before) return;
  controller->refreshHandleIcon();
  controller->refreshPanel();
  if (seen_.hidden != before.hidden && !controller->releaseOwed()) enforceSoon(*controller);
}

StoreFollower::Stored StoreFollower::read() const {
  const auto hidden = preferences_.hiddenBundleIds();
  return {{hidden.begin(), hidden.end()},
          preferences_.groups(),
          preferences_.panelColumns(),
          preferences_.panelIconStyle(),
          preferences_.handleIconStyle()};
}

}  // namespace tarnwick
