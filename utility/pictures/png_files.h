#pragma once

#include <QString>
#include <filesystem>

#include "core/ports/picture_files.h"

namespace tarnwick {

// PNG files in one folder, which is made when it is first needed and again when it is gone.
class PngFiles : public PictureFiles {
 public:
  explicit PngFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}

  std::optional<Bitmap> read(const std::string& name) override;
  void write(const std::string& name, const Bitmap& bitmap) override;

 private:
  // Of that file, with its folder made as far as that is possible.
  QString path(const std::string& name) const;

  std::filesystem::path folder_;
};

}  // namespace tarnwick
