#pragma once

#include <QIcon>
#include <QPixmap>
#include <QStringList>

namespace tarnwick {

// The picture of an application: the first that one of the names leads to, each a name in the icon
// theme or the absolute path of a file; else the theme's picture of any application, else a neutral
// one. Never null.
QIcon applicationIcon(const QStringList& names);

// Its picture as a square of `side` points at `scale` pixels a point, stretched when the icon has
// no such one.
QPixmap applicationPixmap(const QIcon& icon, int side, qreal scale);

}  // namespace tarnwick
