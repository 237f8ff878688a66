#pragma once

#include <optional>
#include <string>

#include "common/base/bitmap.h"

namespace tarnwick {

// PNG files in the application's cache of status item pictures, "Tarnwick/iconcache-2x" below the
// user's data directory.
class PictureFiles {
 public:
  virtual ~PictureFiles() = default;

  // `name` is a single path component. Absent when there is no such file or it is no usable PNG.
  virtual std::optional<Bitmap> read(const std::string& name) = 0;
  // Written whole, in place of an older file of that name; a failure leaves that one as it was.
  virtual void write(const std::string& name, const Bitmap& bitmap) = 0;
};

}  // namespace tarnwick
