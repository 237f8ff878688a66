#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick {

// A picture in pixels: red, green, blue, alpha, one byte each, colours premultiplied by alpha, rows
// from the top without padding.
struct Bitmap {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rgba;  // width x height x 4 bytes

  bool isValid() const {
    return width > 0 && height > 0 &&
           rgba.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
  }
  bool operator==(const Bitmap&) const = default;
};

// A bitmap with the size in points at which it is shown. Shared, never changed.
struct Picture {
  std::shared_ptr<const Bitmap> bitmap;
  Size size;
};

}  // namespace tarnwick
