#pragma once

#include <xcb/xcb.h>

#include <QImage>
#include <cstdint>
#include <optional>
#include <span>

namespace tarnwick::bar::x11 {

// How the pixels of one visual lie in the server's images.
struct PixelLayout {
  int depth = 0;
  int bitsPerPixel = 0;  // 8, 16, 24 or 32
  int scanlinePad = 32;  // bits
  bool bigEndian = false;
  std::uint32_t red = 0;  // masks of the channels within a pixel
  std::uint32_t green = 0;
  std::uint32_t blue = 0;
};

// Absent for visuals without fixed channels (colour maps) and odd pixel sizes.
std::optional<PixelLayout> pixelLayout(const xcb_setup_t& setup, xcb_visualid_t visual, int depth);

// The pixel that shows `colour`, opaque, in a visual of that layout.
std::uint32_t pixelOf(const PixelLayout& layout, QRgb colour);

// An image as the server sent it (z-pixmap) as ARGB32_Premultiplied. What is left of the pixel
// beside the channels is alpha at depth 32. At other depths the picture is opaque but for pixels of
// exactly the `ground` colour: what such an icon has not painted itself. Null when there are too
// few bytes.
QImage pictureOf(std::span<const std::uint8_t> bytes, QSize size, const PixelLayout& layout,
                 QRgb ground);

}  // namespace tarnwick::bar::x11
