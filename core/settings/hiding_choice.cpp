#include "core/settings/hiding_choice.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tarnwick {

void enforceSoon(MenuBarController& controller) {
  if (!controller.isEnforcing()) {
    controller.enforceStow();
    return;
  }
  const auto waiting = std::make_shared<Registration>();
  *waiting = controller.onEnforcingChanged([waiting, weak = controller.weak_from_this()] {
    const auto still = weak.lock();
    if (!still || still->isEnforcing()) return;
    waiting->reset();
    still->enforceStow();
  });
}

bool chooseHidden(const Preferences& preferences, MenuBarController& controller,
                  const std::string& bundleId, bool hidden) {
  auto stored = preferences.hiddenBundleIds();
  std::erase(stored, bundleId);
  if (hidden) stored.push_back(bundleId);
  if (!preferences.setHiddenBundleIds(std::move(stored))) return false;
  if (hidden) {
    enforceSoon(controller);
  } else {
    preferences.assign(bundleId, "");
    controller.unstow(bundleId);
  }
  controller.refreshPanel();
  return true;
}

}  // namespace tarnwick
