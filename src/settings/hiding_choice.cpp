#include "settings/hiding_choice.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

void chooseHidden(const Preferences& preferences, MenuBarController& controller,
                  const std::string& bundleId, bool hidden) {
  auto stored = preferences.hiddenBundleIds();
  std::erase(stored, bundleId);
  if (hidden) stored.push_back(bundleId);
  preferences.setHiddenBundleIds(std::move(stored));
  if (hidden) {
    controller.enforceStow();
  } else {
    preferences.assign(bundleId, "");
    controller.unstow(bundleId);
  }
  controller.refreshPanel();
}

}  // namespace tarnwick
