#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

#include "common/look/application_icon.h"
#include "core/ports/workspace.h"

namespace tarnwick {

inline QIcon iconOf(const ThemeIcon& icon) {
  QStringList names{QString::fromStdString(icon.name)};
  for (const std::string& name : icon.otherNames) names += QString::fromStdString(name);
  return applicationIcon(names);
}

}  // namespace tarnwick
