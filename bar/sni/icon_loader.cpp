#include "bar/sni/icon_loader.h"

#include <QDateTime>
#include <QFileInfo>
#include <QIcon>
#include <QPixmap>
#include <memory>
#include <utility>

#include "bar/sni/icon_files.h"
#include "bar/sni/pixmap_choice.h"
#include "common/look/picture_file.h"

namespace tarnwick::bar {

namespace {

constexpr int cacheBytes = 2 * 1024 * 1024;
constexpr int maximumAspect = 4;  // width to height of a theme's icon
constexpr qsizetype maximumMissing = 256;
constexpr qint64 missingLifeMs = 1'000;

bool isSymbolic(const QString& name) {
  return QFileInfo(name).completeBaseName().endsWith(QLatin1String("-symbolic")) ||
         name.endsWith(QLatin1String("-symbolic"));
}

QString withoutSuffix(const QString& name) {
  for (const char* suffix : {".png", ".svg", ".xpm"}) {
    if (name.endsWith(QLatin1String(suffix))) return name.chopped(4);
  }
  return name;
}

QImage premultiplied(const QImage& image) {
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

IconPicture fromPixmaps(const WirePixmaps& pixmaps, const std::vector<int>& sides) {
  IconPicture picture;
  for (const int side : sides) {
    const std::optional<qsizetype> chosen = choosePixmap(pixmaps, side);
    if (!chosen) continue;
    QImage image = imageOf(pixmaps[*chosen], side);
    const bool known = !picture.images.empty() && picture.images.back().size() == image.size();
    if (!known) picture.images.push_back(std::move(image));
  }
  return picture;
}

}  // namespace

IconLoader::IconLoader() : images_(cacheBytes) {
  clock_.start();
}

IconPicture IconLoader::load(const Request& request, const std::vector<int>& sides) {
  const QString& name = request.icon.name;
  if (name.startsWith(u'/')) {
    IconPicture picture = fromFile(existingIconFile(name, request.pid), sides);
    if (!picture.isNull()) return picture;
  } else if (!name.isEmpty()) {
    const QString lookUp = request.themePath + u'\n' + name;
    const auto missing = missing_.constFind(lookUp);
    if (missing == missing_.constEnd() || clock_.elapsed() - *missing > missingLifeMs) {
      const QString folder = visibleFolder(request.themePath, request.pid);
      IconPicture picture = fromFile(findIconFile(folder, name, sides.back()), sides);
      if (picture.isNull() && !name.contains(u'/')) {
        picture = fromTheme(withoutSuffix(name), sides);
      }
      if (!picture.isNull()) return picture;
      if (missing_.size() >= maximumMissing) missing_.clear();
      missing_.insert(lookUp, clock_.elapsed());
    }
  }
  return fromPixmaps(request.icon.pixmaps, sides);
}

QImage IconLoader::pictureFor(const IconPicture& picture, int side) {
  for (const QImage& image : picture.images) {
    if (image.height() >= side) return image;
  }
  if (!picture.themeName.isEmpty()) {
    const QImage image = themeImage(picture.themeName, side);
    if (!image.isNull()) return image;
  }
  return picture.images.empty() ? QImage() : picture.images.back();
}

bool IconLoader::isOutdated(const IconPicture& picture) {
  if (picture.file.isEmpty()) return false;
  const QFileInfo now(picture.file);
  if (!now.exists()) return false;  // the picture is all there is
  return now.size() != picture.fileSize ||
         now.lastModified().toMSecsSinceEpoch() != picture.fileTime;
}

IconPicture IconLoader::fromFile(const QString& path, const std::vector<int>& sides) {
  if (path.isEmpty()) return {};
  IconPicture picture;
  const QFileInfo info(path);
  picture.file = path;
  picture.fileSize = info.size();
  picture.fileTime = info.lastModified().toMSecsSinceEpoch();
  picture.symbolic = isSymbolic(path);
  for (const int side : sides) {
    const QString key = QStringLiteral("%1\n%2\n%3\n%4")
                            .arg(path)
                            .arg(picture.fileSize)
                            .arg(picture.fileTime)
                            .arg(side);
    if (images_.object(key) == nullptr) {
      auto image = std::make_unique<QImage>(premultiplied(readPictureFile(path, side)));
      if (image->isNull()) return {};
      const auto cost = image->sizeInBytes();
      picture.images.push_back(*image);
      images_.insert(key, image.release(), cost);
    } else {
      picture.images.push_back(*images_.object(key));
    }
  }
  return picture;
}

IconPicture IconLoader::fromTheme(const QString& name, const std::vector<int>& sides) {
  // The larger ones are drawn when they are asked for: the theme does not go away.
  QImage image = themeImage(name, sides.front());
  if (image.isNull()) return {};
  IconPicture picture;
  picture.images.push_back(std::move(image));
  picture.themeName = name;
  picture.symbolic = isSymbolic(name);
  return picture;
}

QImage IconLoader::themeImage(const QString& name, int side) {
  const QString key = QStringLiteral("%1\n%2\n%3").arg(QIcon::themeName(), name).arg(side);
  if (const QImage* const known = images_.object(key)) return *known;
  const QIcon icon = QIcon::fromTheme(name);
  const QImage image =
      icon.isNull() ? QImage()
                    : premultiplied(icon.pixmap(QSize(side * maximumAspect, side), 1.0).toImage());
  if (image.isNull()) return {};
  images_.insert(key, new QImage(image), image.sizeInBytes());
  return image;
}

}  // namespace tarnwick::bar
