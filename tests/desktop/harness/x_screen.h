#pragma once

#include <QImage>
#include <QString>

namespace tarnwick::test {

// Whether a window manager runs on the display.
bool windowManagerRuns(const QString& display);

// The display's root window; null when it cannot be read.
QImage grabScreen(const QString& display);

}  // namespace tarnwick::test
