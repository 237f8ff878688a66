#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/base/bitmap.h"
#include "core/menubar/menu_bar_item_info.h"
#include "core/ports/main_loop.h"
#include "core/ports/picture_files.h"
#include "core/ports/task.h"
#include "core/ports/window_capture.h"

namespace tarnwick {

// Pictures of other applications' status items, two pixels per point, one for each bundle
// identifier: taken while the items are on screen, kept in memory and as PNG files. The process has
// one, shared by the controller and the panel.
class StatusIconCapturer : public std::enable_shared_from_this<StatusIconCapturer> {
 public:
  StatusIconCapturer(MainLoop& loop, WindowCapture& windows, PictureFiles& files)
      : loop_(loop), windows_(windows), files_(files) {}

  // Pictures every item that a window can be found for, one after another in list order; the last
  // item of an application wins. The task ends with the run; it is ended already when capturing is
  // not allowed, `items` is empty or another run is going on (the request is dropped).
  Task captureAll(std::vector<MenuBarItemInfo> items);

  bool isCapturing() const { return isCapturing_; }

  // From memory, else from the file. Absent when there is no usable picture.
  std::optional<Picture> cachedIcon(const std::string& bundleId);

  // Whether the cached picture has a single colour; false without one.
  bool isMonochromeIcon(const std::string& bundleId);

 private:
  using Self = std::shared_ptr<StatusIconCapturer>;

  static Task run(MainLoop& loop, Self self, std::vector<MenuBarItemInfo> items);
  void store(const std::string& bundleId, Bitmap bitmap);

  MainLoop& loop_;
  WindowCapture& windows_;
  PictureFiles& files_;
  std::unordered_map<std::string, Picture> memoryCache_;
  std::unordered_map<std::string, bool> monochromeCache_;
  bool isCapturing_ = false;
};

}  // namespace tarnwick
