#pragma once

#include <optional>

#include "common/base/bitmap.h"

namespace tarnwick {

// Whether every pixel that counts (alpha above 32 of 255) is nearly grey: at most 40 between its
// largest and smallest premultiplied channel. True when no pixel counts, false for an empty bitmap.
bool isMonochrome(const Bitmap& bitmap);

// The bitmap cropped to its visible pixels (alpha above 16 of 255), without a margin. Absent when
// nothing is visible.
std::optional<Bitmap> trimmingTransparentBorder(const Bitmap& bitmap);

}  // namespace tarnwick
