#include "core/capture/bitmap_analysis.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::uint8_t visibleAbove = 16;  // alpha
constexpr std::uint8_t countedAbove = 32;  // alpha
constexpr int largestSpread = 40;          // between channels

}  // namespace

bool isMonochrome(const Bitmap& bitmap) {
  if (!bitmap.isValid()) return false;
  const std::uint8_t* const end = bitmap.rgba.data() + bitmap.rgba.size();
  for (const std::uint8_t* pixel = bitmap.rgba.data(); pixel != end; pixel += 4) {
    if (pixel[3] <= countedAbove) continue;
    const auto [smallest, largest] = std::minmax({pixel[0], pixel[1], pixel[2]});
    if (largest - smallest > largestSpread) return false;
  }
  return true;
}

std::optional<Bitmap> trimmingTransparentBorder(const Bitmap& bitmap) {
  if (!bitmap.isValid()) return std::nullopt;
  int minX = bitmap.width, minY = bitmap.height, maxX = -1, maxY = -1;
  const std::uint8_t* alpha = bitmap.rgba.data() + 3;
  for (int y = 0; y < bitmap.height; ++y) {
    for (int x = 0; x < bitmap.width; ++x, alpha += 4) {
      if (*alpha <= visibleAbove) continue;
      minX = std::min(minX, x);
      maxX = std::max(maxX, x);
      minY = std::min(minY, y);
      maxY = y;
    }
  }
  if (maxY < 0) return std::nullopt;
  Bitmap trimmed{maxX - minX + 1, maxY - minY + 1, {}};
  const auto rowBytes = static_cast<std::ptrdiff_t>(trimmed.width) * 4;
  trimmed.rgba.reserve(static_cast<std::size_t>(rowBytes * trimmed.height));
  for (int y = minY; y <= maxY; ++y) {
    const auto row =
        bitmap.rgba.begin() + (static_cast<std::ptrdiff_t>(y) * bitmap.width + minX) * 4;
    trimmed.rgba.insert(trimmed.rgba.end(), row, row + rowBytes);
  }
  return trimmed;
}

}  // namespace tarnwick
