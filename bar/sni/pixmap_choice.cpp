#include "bar/sni/pixmap_choice.h"

#include <QtEndian>
#include <algorithm>

namespace tarnwick::bar {

namespace {

constexpr int maximumSide = 4'096;  // pixels
constexpr int maximumAspect = 8;    // width to height

bool isUsable(const WirePixmap& pixmap) {
  const auto sane = [](int length) { return length > 0 && length <= maximumSide; };
  return sane(pixmap.width) && sane(pixmap.height) &&
         pixmap.bytes.size() == qint64{4} * pixmap.width * pixmap.height;
}

}  // namespace

std::optional<qsizetype> choosePixmap(const WirePixmaps& pixmaps, int side) {
  std::optional<qsizetype> best;
  int bestSide = 0;
  for (qsizetype i = 0; i < pixmaps.size(); ++i) {
    if (!isUsable(pixmaps[i])) continue;
    const int shorter = std::min(pixmaps[i].width, pixmaps[i].height);
    const bool better =
        bestSide < side ? shorter > bestSide : shorter >= side && shorter < bestSide;
    if (best && !better) continue;
    best = i;
    bestSide = shorter;
  }
  return best;
}

QImage imageOf(const WirePixmap& pixmap, int side) {
  if (!isUsable(pixmap) || side <= 0) return {};
  // Every n-th pixel of a huge picture, so that its size costs nothing; then a smooth reduction.
  const int step = std::max(1, pixmap.height / (4 * side));
  const int height = pixmap.height / step;
  const int width = std::max(1, pixmap.width / step);
  QImage image(width, height, QImage::Format_ARGB32);
  const char* const source = pixmap.bytes.constData();
  for (int y = 0; y < height; ++y) {
    const char* const row = source + qint64{4} * pixmap.width * y * step;
    auto* const target = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < width; ++x) target[x] = qFromBigEndian<quint32>(row + qint64{4} * x * step);
  }
  image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  if (height <= side && width <= side * maximumAspect) return image;
  return image.scaled(side * maximumAspect, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tarnwick::bar
