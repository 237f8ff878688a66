#pragma once

#include <QIcon>
#include <QString>

#include "platform/workspace.h"

namespace tarnwick {

inline QIcon iconOf(const ThemeIcon& icon) {
  const QString name = QString::fromStdString(icon.name);
  return name.startsWith(QLatin1Char('/')) ? QIcon(name) : QIcon::fromTheme(name);
}

}  // namespace tarnwick
