#pragma once

#include <QByteArray>
#include <QIcon>
#include <QImage>
#include <QString>

namespace tarnwick {

// Pictures that another program sent or named. At most `side` pixels high, in proportion, never
// enlarged (vector pictures are drawn at `side`). A null image for anything that is no picture, is
// larger than 4 MiB or has a side beyond 2048 pixels.
QImage readPicture(const QByteArray& bytes, int side);

// The same from a file; only a regular file is opened, so that it cannot block.
QImage readPictureFile(const QString& path, int side);

// An icon as desktop entries name it: by a name in the icon theme or the path of a picture, which
// has at most 128 pixels then. Null when there is none.
QIcon namedIcon(const QString& nameOrPath);

}  // namespace tarnwick
