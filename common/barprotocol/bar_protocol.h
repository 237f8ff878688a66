#pragma once

#include <QLatin1String>
#include <QString>

// Names of the D-Bus interface org.tarnwick.MenuBar1 and of what it stands on.
namespace tarnwick::barservice {

inline constexpr QLatin1String name("org.tarnwick.MenuBar1");
inline constexpr QLatin1String path("/org/tarnwick/MenuBar1");
inline constexpr QLatin1String interface("org.tarnwick.MenuBar1");
inline constexpr unsigned version = 1;  // the one we speak

// Capabilities.
inline constexpr QLatin1String accessibility("accessibility");
inline constexpr QLatin1String screenCapture("screen-capture");

}  // namespace tarnwick::barservice

namespace tarnwick::dbus {

inline constexpr QLatin1String daemonName("org.freedesktop.DBus");
inline constexpr QLatin1String daemonPath("/org/freedesktop/DBus");
inline constexpr QLatin1String properties("org.freedesktop.DBus.Properties");

}  // namespace tarnwick::dbus
