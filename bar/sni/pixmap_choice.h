#pragma once

#include <QImage>
#include <optional>

#include "bar/sni/sni_properties.h"

namespace tarnwick::bar {

// The picture to show at `side` pixels of height: the smallest that is at least so large in both
// directions, else the largest. Only entries whose byte count fits their size, and no side of which
// exceeds 4,096 pixels, count; absent when there is none.
std::optional<qsizetype> choosePixmap(const WirePixmaps& pixmaps, int side);

// A picture for painting (premultiplied, with bytes of its own), at most `side` pixels high and 8
// times as wide, in proportion; smaller ones keep their size. Null when choosePixmap would not take
// it.
QImage imageOf(const WirePixmap& pixmap, int side);

}  // namespace tarnwick::bar
