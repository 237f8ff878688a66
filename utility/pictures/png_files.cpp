#include "utility/pictures/png_files.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QSaveFile>
#include <system_error>

namespace tarnwick {

namespace {

// What is taken of items is far smaller.
constexpr int largestWidth = 2048;               // pixels
constexpr int largestHeight = 256;               // pixels
constexpr qint64 largestFile = 4 * 1024 * 1024;  // bytes

}  // namespace

QString PngFiles::path(const std::string& name) const {
  std::error_code ignored;
  std::filesystem::create_directories(folder_, ignored);
  return QString::fromStdString((folder_ / name).string());
}

std::optional<Bitmap> PngFiles::read(const std::string& name) {
  const QString place = path(name);
  if (!QFileInfo(place).isFile()) return std::nullopt;  // opening a pipe would wait
  QFile file(place);
  if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile) return std::nullopt;
  QImageReader reader(&file, "png");
  const QSize size = reader.size();  // from the header, before anything is decoded
  if (size.isEmpty() || size.width() > largestWidth || size.height() > largestHeight) {
    return std::nullopt;
  }
  const QImage image = reader.read().convertToFormat(QImage::Format_RGBA8888_Premultiplied);
  if (image.isNull()) return std::nullopt;
  return Bitmap{
      image.width(), image.height(), {image.constBits(), image.constBits() + image.sizeInBytes()}};
}

void PngFiles::write(const std::string& name, const Bitmap& bitmap) {
  const QImage image(bitmap.rgba.data(), bitmap.width, bitmap.height, bitmap.width * 4,
                     QImage::Format_RGBA8888_Premultiplied);
  QSaveFile file(path(name));
  if (!file.open(QIODevice::WriteOnly)) return;
  if (image.save(&file, "png")) file.commit();
}

}  // namespace tarnwick
