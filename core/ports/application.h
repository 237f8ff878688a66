#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

enum class ActivationPolicy : std::uint8_t {
  regular,
  accessory,  // no task-bar entry, no menu bar of its own, lives without windows
};

namespace bundleinfo {
inline constexpr std::string_view shortVersion = "CFBundleShortVersionString";
inline constexpr std::string_view build = "CFBundleVersion";
}  // namespace bundleinfo

// This process as the desktop sees it.
class Application {
 public:
  virtual ~Application() = default;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  // Own identity, in the form of RunningApplication::bundleIdentifier.
  virtual std::string bundleIdentifier() const = 0;
  // What this build says of itself; absent when it does not say it in words.
  virtual std::optional<std::string> bundleInfo(std::string_view key) const = 0;

  // Has the program as it is installed now start anew. `reported` is called once, in a later turn
  // of the loop, whether that can be done or not. The new instance takes over when this one ends.
  virtual void openNewInstance(std::function<void()> reported) = 0;
  // Leaves the event loop soon; the process then ends in good order.
  virtual void terminate() = 0;
};

}  // namespace tarnwick
