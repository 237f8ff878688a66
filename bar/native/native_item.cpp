#include "bar/native/native_item.h"

#include <cmath>
#include <utility>

namespace tarnwick::bar {

NativeItem::NativeItem(QString owner, qint32 pid, QString autosaveName, double length)
    : owner_(std::move(owner)),
      autosaveName_(std::move(autosaveName)),
      pid_(pid),
      length_(length) {}

void NativeItem::setLength(double points) {
  if (points == length_) return;
  length_ = points;
  emit lengthChanged();
}

void NativeItem::setImage(NativeImage image) {
  image_ = std::move(image);
  tinted_ = {};
  emit contentChanged();
}

ItemRecord NativeItem::record() const {
  return {pid_, ItemKind::native, autosaveName_, {}, owner_, {}, {}};
}

QString NativeItem::key() const {
  return QStringLiteral("native:") + autosaveName_;
}

void NativeItem::paint(QPainter& painter, const QRectF& cell, double scale,
                       const QColor& foreground) {
  if (image_.pixels.isNull()) return;
  QRectF target(QPointF(), image_.size);
  target.moveCenter(cell.center());
  // On whole device pixels a picture made for this scale stays sharp.
  target.moveTo(std::round(target.x() * scale) / scale, std::round(target.y() * scale) / scale);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(target, pixelsFor(foreground));
}

const QImage& NativeItem::pixelsFor(const QColor& foreground) {
  if (!image_.isTemplate) return image_.pixels;
  if (tinted_.isNull() || tint_ != foreground) {
    tint_ = foreground;
    tinted_ = image_.pixels;
    QPainter painter(&tinted_);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(tinted_.rect(), foreground);
  }
  return tinted_;
}

void NativeItem::clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                         QPointF globalPoints, QPointF) {
  if (button != Qt::LeftButton && button != Qt::RightButton) return;
  emit ownerClicked(button, modifiers, globalPoints);
}

void NativeItem::press(QPointF anchor) {
  emit ownerClicked(Qt::LeftButton, Qt::NoModifier, anchor);
}

}  // namespace tarnwick::bar
