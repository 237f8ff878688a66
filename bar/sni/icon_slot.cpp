#include "bar/sni/icon_slot.h"

#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <utility>

#include "bar/board/metrics.h"
#include "bar/board/placeholder.h"

namespace tarnwick::bar {

namespace {

constexpr double maximumAspect = 8;
constexpr double capturedScale = 2;  // pictures of items are taken at two pixels per point

std::vector<int> wantedSides() {
  const double side = Metrics::shared().iconSide();
  const int shown = static_cast<int>(std::lround(side * qGuiApp->devicePixelRatio()));
  const int captured = static_cast<int>(std::lround(side * capturedScale));
  if (captured <= shown) return {shown};
  return {shown, captured};
}

size_t sourceOf(const std::vector<IconLoader::Request>& candidates) {
  size_t hash = 1;
  for (const IconLoader::Request& request : candidates) {
    hash = qHashMulti(hash, request.icon.name, request.themePath, request.pid);
    for (const WirePixmap& pixmap : request.icon.pixmaps) {
      hash = qHashMulti(hash, pixmap.width, pixmap.height, pixmap.bytes);
    }
  }
  return std::max<size_t>(hash, 1);
}

QImage inColour(QImage image, const QColor& colour) {
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), colour);
  return image;
}

}  // namespace

bool IconSlot::update(IconLoader& loader, const std::vector<IconLoader::Request>& candidates) {
  const size_t source = sourceOf(candidates);
  const bool settled = candidates.empty() || !picture_.isNull();
  if (source == source_ && settled && !IconLoader::isOutdated(picture_)) return false;
  source_ = source;
  IconPicture fresh;
  for (const IconLoader::Request& request : candidates) {
    fresh = loader.load(request, wantedSides());
    if (!fresh.isNull()) break;
  }
  const bool changed = fresh.images != picture_.images || fresh.symbolic != picture_.symbolic;
  picture_ = std::move(fresh);
  const std::vector<QImage>& images = picture_.images;
  wasVisible_ = wasVisible_ || !std::all_of(images.begin(), images.end(), isWhollyTransparent);
  return changed;
}

double IconSlot::width(double side) const {
  if (picture_.isNull()) return side;
  const QImage& image = picture_.images.front();
  const double ratio = static_cast<double>(image.width()) / image.height();
  return side * std::clamp(ratio, 1 / maximumAspect, maximumAspect);
}

void IconSlot::paint(QPainter& painter, const QRectF& rect, double scale, const QColor& foreground,
                     IconLoader& loader) const {
  const double wanted = rect.height() * scale;
  QImage image = loader.pictureFor(picture_, static_cast<int>(std::lround(wanted)));
  if (image.isNull()) return;
  if (picture_.symbolic) image = inColour(std::move(image), foreground);
  // A picture a little too small stays sharp at a whole multiple of its size.
  double height = wanted;
  const double multiple = std::floor(wanted / image.height()) * image.height();
  if (multiple >= 0.75 * wanted) height = multiple;
  double width = height * image.width() / image.height();
  if (width > rect.width() * scale + 1) {
    width = rect.width() * scale;
    height = width * image.height() / image.width();
  }
  const QRectF pixels(std::round(rect.center().x() * scale - width / 2),
                      std::round(rect.center().y() * scale - height / 2), std::round(width),
                      std::round(height));
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(pixels.topLeft() / scale, pixels.size() / scale), image);
}

}  // namespace tarnwick::bar
