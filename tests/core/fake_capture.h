#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "common/base/callback_list.h"
#include "core/ports/main_loop.h"
#include "core/ports/picture_files.h"
#include "core/ports/window_capture.h"

namespace tarnwick::test {

// Rows of `width` pixels, red, green, blue, alpha.
inline Bitmap bitmapOf(int width, const std::vector<std::array<std::uint8_t, 4>>& pixels) {
  Bitmap bitmap{width, static_cast<int>(pixels.size()) / width, {}};
  for (const auto& pixel : pixels) {
    bitmap.rgba.insert(bitmap.rgba.end(), pixel.begin(), pixel.end());
  }
  return bitmap;
}

// Windows to picture, with pictures given by the test, and files kept in memory. Answers after
// `delay`.
class FakeCapture : public WindowCapture, public PictureFiles {
 public:
  explicit FakeCapture(MainLoop& loop) : loop_(loop) {}

  struct Request {
    std::uint64_t window;
    int width;
    int height;
  };

  Duration delay = std::chrono::milliseconds(10);
  bool allowed = true;
  int requests = 0;
  CallbackList accessChanged;
  std::optional<std::vector<CapturableWindow>> list = std::vector<CapturableWindow>{};
  // Asked in place of `list` when set.
  std::function<std::vector<CapturableWindow>()> listNow;
  std::map<std::uint64_t, Bitmap> pictures;
  std::optional<Bitmap> anyPicture;  // of windows that have none of their own
  std::vector<Request> captured;
  std::map<std::string, Bitmap> files;

  bool preflight() override { return allowed; }
  void request() override { ++requests; }
  Registration onAccessChanged(std::function<void()> callback) override {
    return accessChanged.add(std::move(callback));
  }
  void windows(
      std::function<void(std::optional<std::vector<CapturableWindow>>)> callback) override {
    answer([this, callback = std::move(callback)] { callback(listNow ? listNow() : list); });
  }
  void capture(std::uint64_t window, int width, int height,
               std::function<void(std::optional<Bitmap>)> callback) override {
    captured.push_back({window, width, height});
    answer([this, window, callback = std::move(callback)] {
      const auto picture = pictures.find(window);
      callback(picture == pictures.end() ? anyPicture : std::optional(picture->second));
    });
  }
  std::optional<Bitmap> read(const std::string& name) override {
    const auto file = files.find(name);
    return file == files.end() ? std::nullopt : std::optional(file->second);
  }
  void write(const std::string& name, const Bitmap& bitmap) override { files[name] = bitmap; }

 private:
  void answer(std::function<void()> callback) {
    const auto timer = std::make_shared<Registration>();
    *timer = loop_.callAfter(delay, [timer, callback] { callback(); });
  }

  MainLoop& loop_;
};

}  // namespace tarnwick::test
