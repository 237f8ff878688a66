#pragma once

#include <QIcon>
#include <QString>

namespace tarnwick::bar {

// An application's icon by theme name or absolute path; the desktop's generic one when there is
// none such.
QIcon applicationIcon(const QString& nameOrPath);

}  // namespace tarnwick::bar
