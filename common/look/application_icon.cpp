#include "common/look/application_icon.h"

#include <QFileInfo>
#include <QPainter>

#include "common/look/picture_file.h"

namespace tarnwick {

namespace {

// The ways in which themes name what stands in desktop entries: "Foo", "foo.png" and a path that is
// gone may all be "foo" there. Dashes are for the toolkit: it looks for "foo" in place of
// "foo-bar".
QStringList spellings(const QString& name) {
  QString base = QFileInfo(name).fileName();
  for (const char* const suffix : {".png", ".svg", ".svgz", ".xpm", ".ico"}) {
    if (base.endsWith(QLatin1String(suffix), Qt::CaseInsensitive)) {
      base.chop(static_cast<int>(qstrlen(suffix)));
    }
  }
  QStringList names{name, base, base.toLower()};
  names.removeAll(QString());
  names.removeDuplicates();
  return names;
}

// A window with a title bar, in a tone that stands out from light and dark.
QIcon neutralIcon() {
  constexpr int side = 64;
  QPixmap picture(side, side);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(128, 132, 140));
  painter.drawRoundedRect(QRect(4, 8, 56, 48), 8, 8);
  painter.setBrush(QColor(200, 203, 208));
  painter.drawRoundedRect(QRect(8, 20, 48, 32), 4, 4);
  painter.end();
  return QIcon(picture);
}

}  // namespace

QIcon applicationIcon(const QStringList& names) {
  for (const QString& name : names) {
    for (const QString& spelling : spellings(name)) {
      if (QIcon icon = namedIcon(spelling); !icon.isNull()) return icon;
    }
  }
  for (const char* const generic :
       {"application-x-executable", "application-default-icon", "applications-other"}) {
    if (QIcon icon = QIcon::fromTheme(QLatin1String(generic)); !icon.isNull()) return icon;
  }
  static const QIcon neutral = neutralIcon();
  return neutral;
}

QPixmap applicationPixmap(const QIcon& icon, int side, qreal scale) {
  const int wanted = qRound(side * scale);
  QPixmap pixmap;
  // The nearest size may be smaller although the theme has a larger one.
  for (int asked = wanted; asked <= 8 * wanted && pixmap.width() < wanted; asked *= 2) {
    QPixmap found = icon.pixmap(QSize(asked, asked), 1);
    if (found.width() > pixmap.width()) pixmap = std::move(found);
  }
  pixmap.setDevicePixelRatio(1);
  if (!pixmap.isNull() && pixmap.size() != QSize(wanted, wanted)) {
    pixmap = pixmap.scaled(wanted, wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  pixmap.setDevicePixelRatio(scale);
  return pixmap;
}

}  // namespace tarnwick
