#pragma once

#include <QIcon>
#include <QString>

#include "dbusmenu/picture_file.h"
#include "platform/workspace.h"

namespace tarnwick {

inline QIcon iconOf(const ThemeIcon& icon) {
  return namedIcon(QString::fromStdString(icon.name));
}

}  // namespace tarnwick
