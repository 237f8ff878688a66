#pragma once

#include <QCache>
#include <QElapsedTimer>
#include <QHash>
#include <QImage>
#include <QString>
#include <optional>
#include <vector>

#include "bar/sni/sni_properties.h"

namespace tarnwick::bar {

// A decoded icon. Pictures are premultiplied and at most as high as they were asked for.
struct IconPicture {
  std::vector<QImage> images;  // lowest first; empty: nothing was found
  QString themeName;           // set: it can be had at other sizes
  QString file;                // set: the file it came from, as it was
  qint64 fileSize = 0;
  qint64 fileTime = 0;    // ms
  bool symbolic = false;  // one colour, to be drawn in that of the text

  bool isNull() const { return images.empty(); }
};

// Finds and decodes the icons of items: names in the item's own folder, names in the icon theme,
// absolute paths, sent pixmaps, in this order. Keeps up to 2 MiB of decoded pictures from files, so
// that items that look the same share them.
class IconLoader {
 public:
  struct Request {
    SniIcon icon;
    QString themePath;  // the item's own folder; may be empty
    qint32 pid = 0;     // whose files are meant when a path leads nowhere here: a sandbox
  };

  IconLoader();

  // `sides` are heights in pixels, ascending.
  IconPicture load(const Request& request, const std::vector<int>& sides);

  // The picture best drawn at `side` pixels; null when there is none.
  QImage pictureFor(const IconPicture& picture, int side);

  // Whether loading it again could give something else: its file has changed.
  static bool isOutdated(const IconPicture& picture);

 private:
  IconPicture fromFile(const QString& path, const std::vector<int>& sides);
  IconPicture fromTheme(const QString& name, const std::vector<int>& sides);
  QImage themeImage(const QString& name, int side);

  QCache<QString, QImage> images_;
  QHash<QString, qint64> missing_;  // look-ups that found nothing, and when
  QElapsedTimer clock_;
};

}  // namespace tarnwick::bar
