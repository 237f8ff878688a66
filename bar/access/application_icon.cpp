#include "bar/access/application_icon.h"

#include <QApplication>
#include <QFileInfo>
#include <QStyle>

namespace tarnwick::bar {

QIcon applicationIcon(const QString& nameOrPath) {
  QIcon icon;
  if (nameOrPath.startsWith(QLatin1Char('/'))) {
    if (QFileInfo::exists(nameOrPath)) icon = QIcon(nameOrPath);
  } else if (!nameOrPath.isEmpty()) {
    icon = QIcon::fromTheme(nameOrPath);
  }
  if (icon.isNull()) icon = QIcon::fromTheme(QStringLiteral("application-x-executable"));
  if (icon.isNull()) icon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
  return icon;
}

}  // namespace tarnwick::bar
