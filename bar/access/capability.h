#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace tarnwick::bar {

// What a program may be allowed to do with other applications' items.
enum class Capability : std::uint8_t {
  accessibility,  // "accessibility": list, press and move them
  screenCapture,  // "screen-capture": take their pictures
};

inline constexpr Capability allCapabilities[] = {Capability::accessibility,
                                                 Capability::screenCapture};

// Its name on the bus and in the file of grants.
inline QString toName(Capability capability) {
  return capability == Capability::accessibility ? QStringLiteral("accessibility")
                                                 : QStringLiteral("screen-capture");
}

inline std::optional<Capability> capabilityOf(const QString& name) {
  for (const Capability capability : allCapabilities) {
    if (name == toName(capability)) return capability;
  }
  return std::nullopt;
}

}  // namespace tarnwick::bar
