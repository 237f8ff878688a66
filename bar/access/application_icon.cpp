#include "bar/access/application_icon.h"

#include <QApplication>
#include <QStyle>

#include "dbusmenu/picture_file.h"

namespace tarnwick::bar {

QIcon applicationIcon(const QString& nameOrPath) {
  QIcon icon = namedIcon(nameOrPath);
  if (icon.isNull()) icon = QIcon::fromTheme(QStringLiteral("application-x-executable"));
  if (icon.isNull()) icon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
  return icon;
}

}  // namespace tarnwick::bar
