#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <vector>

#include "bar/sni/icon_loader.h"

namespace tarnwick::bar {

// One icon of an item, decoded, and what it was loaded from.
class IconSlot {
 public:
  // Loads the first of `candidates` that can be loaded, if something can have changed since the
  // last time. True when it looks different now.
  bool update(IconLoader& loader, const std::vector<IconLoader::Request>& candidates);
  // The next update loads the icon whatever it comes from.
  void forget() { source_ = 0; }

  bool isNull() const { return picture_.isNull(); }
  // There is a picture, and all that there have been so far were wholly transparent. An icon that
  // blinks is not blank: some of its pictures are visible.
  bool isBlank() const { return !isNull() && !wasVisible_; }
  // Width in points at a height of `side` points; at most 8 times as wide.
  double width(double side) const;
  // Draws it centred into `rect`, as high as that or as a whole number of its pixels gives.
  void paint(QPainter& painter, const QRectF& rect, double scale, const QColor& foreground,
             IconLoader& loader) const;

 private:
  IconPicture picture_;
  size_t source_ = 0;  // hash of where the picture came from
  bool wasVisible_ = false;
};

}  // namespace tarnwick::bar
