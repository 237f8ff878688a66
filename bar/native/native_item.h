#pragma once

#include <QImage>
#include <QSizeF>

#include "bar/board/item.h"

namespace tarnwick::bar {

// What a native item shows.
struct NativeImage {
  QSizeF size;              // points
  QImage pixels;            // premultiplied; null for nothing
  bool isTemplate = false;  // only its alpha counts: drawn in the bar's foreground colour
};

// A status item that a program put into the bar over D-Bus: a length it chose, a picture, and
// clicks that go back to it.
class NativeItem : public Item {
  Q_OBJECT

 public:
  // `owner` is the unique bus name of the connection that added it.
  NativeItem(QString owner, qint32 pid, QString autosaveName, double length);

  const QString& owner() const { return owner_; }
  void setLength(double points);
  void setImage(NativeImage image);

  ItemRecord record() const override;
  QString key() const override;
  double length() const override { return length_; }
  bool isBlank() const override { return image_.pixels.isNull(); }
  void paint(QPainter& painter, const QRectF& cell, double scale,
             const QColor& foreground) override;
  void clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF globalPoints,
               QPointF anchor) override;
  void press(QPointF anchor) override;

 signals:
  // Left or right button, on release.
  void ownerClicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF globalPoints);

 private:
  const QImage& pixelsFor(const QColor& foreground);

  QString owner_;
  QString autosaveName_;
  qint32 pid_ = 0;
  double length_ = 0;
  NativeImage image_;
  QImage tinted_;  // of a template, in tint_
  QColor tint_;
};

}  // namespace tarnwick::bar
