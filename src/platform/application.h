#pragma once

#include <cstdint>
#include <string>

namespace tarnwick {

enum class ActivationPolicy : std::uint8_t {
  regular,
  accessory,  // no task-bar entry, no menu bar of its own, lives without windows
};

// This process as the desktop sees it.
class Application {
 public:
  virtual ~Application() = default;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  // Own identity, in the form of RunningApplication::bundleIdentifier.
  virtual std::string bundleIdentifier() const = 0;
};

}  // namespace tarnwick
