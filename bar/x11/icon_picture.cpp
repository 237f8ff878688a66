#include "bar/x11/icon_picture.h"

#include <algorithm>
#include <bit>

namespace tarnwick::bar::x11 {

namespace {

// A channel's value, widened or narrowed to 0 ... 255.
std::uint32_t channel(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 0;
  const std::uint64_t most = mask >> std::countr_zero(mask);
  const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
  return static_cast<std::uint32_t>((value * 255 + most / 2) / most);
}

std::uint32_t inChannel(int value, std::uint32_t mask) {
  if (mask == 0) return 0;
  const std::uint64_t most = mask >> std::countr_zero(mask);
  const auto scaled = (static_cast<std::uint64_t>(value) * most + 127) / 255;
  return static_cast<std::uint32_t>(scaled) << std::countr_zero(mask);
}

std::uint32_t pixelAt(const std::uint8_t* bytes, int count, bool bigEndian) {
  std::uint32_t pixel = 0;
  for (int i = 0; i < count; ++i) {
    const int shift = 8 * (bigEndian ? count - 1 - i : i);
    pixel |= static_cast<std::uint32_t>(bytes[i]) << shift;
  }
  return pixel;
}

}  // namespace

std::optional<PixelLayout> pixelLayout(const xcb_setup_t& setup, xcb_visualid_t visual, int depth) {
  PixelLayout layout;
  layout.depth = depth;
  layout.bigEndian = setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
  for (auto format = xcb_setup_pixmap_formats_iterator(&setup); format.rem;
       xcb_format_next(&format)) {
    if (format.data->depth != depth) continue;
    layout.bitsPerPixel = format.data->bits_per_pixel;
    layout.scanlinePad = format.data->scanline_pad;
  }
  const bool wholeBytes = layout.bitsPerPixel >= 8 && layout.bitsPerPixel <= 32 &&
                          layout.bitsPerPixel % 8 == 0 && layout.scanlinePad >= 8;
  if (!wholeBytes) return {};

  for (auto screen = xcb_setup_roots_iterator(&setup); screen.rem; xcb_screen_next(&screen)) {
    for (auto depths = xcb_screen_allowed_depths_iterator(screen.data); depths.rem;
         xcb_depth_next(&depths)) {
      for (auto it = xcb_depth_visuals_iterator(depths.data); it.rem; xcb_visualtype_next(&it)) {
        if (it.data->visual_id != visual) continue;
        if (it.data->_class != XCB_VISUAL_CLASS_TRUE_COLOR &&
            it.data->_class != XCB_VISUAL_CLASS_DIRECT_COLOR)
          return {};
        layout.red = it.data->red_mask;
        layout.green = it.data->green_mask;
        layout.blue = it.data->blue_mask;
        return layout;
      }
    }
  }
  return {};
}

std::uint32_t pixelOf(const PixelLayout& layout, QRgb colour) {
  const std::uint32_t channels = inChannel(qRed(colour), layout.red) |
                                 inChannel(qGreen(colour), layout.green) |
                                 inChannel(qBlue(colour), layout.blue);
  return layout.depth == 32 ? channels | ~(layout.red | layout.green | layout.blue) : channels;
}

QImage pictureOf(std::span<const std::uint8_t> bytes, QSize size, const PixelLayout& layout,
                 QRgb ground) {
  if (size.isEmpty()) return {};
  const int bytesPerPixel = layout.bitsPerPixel / 8;
  const std::int64_t padded =
      static_cast<std::int64_t>(size.width()) * layout.bitsPerPixel + layout.scanlinePad - 1;
  const std::int64_t stride = padded / layout.scanlinePad * layout.scanlinePad / 8;
  if (static_cast<std::int64_t>(bytes.size()) < stride * size.height()) return {};

  QImage picture(size, QImage::Format_ARGB32_Premultiplied);
  const std::uint32_t used = layout.red | layout.green | layout.blue;
  const std::uint32_t alphaMask = layout.depth == 32 ? ~used : 0;
  const std::uint32_t groundPixel = pixelOf(layout, ground) & used;
  for (int y = 0; y < size.height(); ++y) {
    const std::uint8_t* source = bytes.data() + stride * y;
    auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
    for (int x = 0; x < size.width(); ++x, source += bytesPerPixel) {
      const std::uint32_t pixel = pixelAt(source, bytesPerPixel, layout.bigEndian);
      std::uint32_t alpha = 255;
      if (alphaMask != 0) {
        alpha = channel(pixel, alphaMask);
      } else if ((pixel & used) == groundPixel) {
        alpha = 0;
      }
      // Blending relies on no channel being above alpha; not every client keeps to it.
      const auto part = [&](std::uint32_t mask) {
        return static_cast<int>(std::min(channel(pixel, mask), alpha));
      };
      row[x] =
          qRgba(part(layout.red), part(layout.green), part(layout.blue), static_cast<int>(alpha));
    }
  }
  return picture;
}

}  // namespace tarnwick::bar::x11
