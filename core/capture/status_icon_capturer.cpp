#include "core/capture/status_icon_capturer.h"

#include <cmath>
#include <utility>

#include "core/capture/bitmap_analysis.h"

namespace tarnwick {

namespace {

constexpr double maximumWindowHeight = 60.0;  // points
constexpr double maximumDistance = 15.0;      // points between left edges
constexpr int pixelsPerPoint = 2;
constexpr std::size_t longestFileName = 255;  // bytes

Picture pictureOf(Bitmap bitmap) {
  const Size size{bitmap.width / double{pixelsPerPoint}, bitmap.height / double{pixelsPerPoint}};
  return {std::make_shared<const Bitmap>(std::move(bitmap)), size};
}

// The bundle identifier with ".png". What would leave the folder or be no file name is written as
// %XX, so that it stays one path component. Absent when it would be too long for a file.
std::optional<std::string> fileName(const std::string& bundleId) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string name;
  for (const char c : bundleId) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '/' || c == '%' || byte < 0x20 || byte == 0x7f) {
      name += {'%', digits[byte >> 4], digits[byte & 15]};
    } else {
      name += c;
    }
  }
  name += ".png";
  if (name.size() > longestFileName) return std::nullopt;
  return name;
}

int pixels(double points) {
  return points > 0 && points < 10'000 ? static_cast<int>(points) * pixelsPerPoint : 0;
}

// Windows of status items stand at the very top and are low.
bool isStatusItemWindow(const CapturableWindow& window) {
  return window.frame.y == 0.0 && window.frame.height <= maximumWindowHeight;
}

// Matched by position alone; of two as near the first one.
const CapturableWindow* windowOf(const MenuBarItemInfo& item,
                                 const std::vector<CapturableWindow>& windows) {
  const CapturableWindow* nearest = nullptr;
  double distance = 0;
  for (const CapturableWindow& window : windows) {
    const double candidate = std::abs(window.frame.x - item.frame.x);
    if (nearest && candidate >= distance) continue;
    nearest = &window;
    distance = candidate;
  }
  return nearest && distance <= maximumDistance ? nearest : nullptr;
}

}  // namespace

Task StatusIconCapturer::captureAll(std::vector<MenuBarItemInfo> items) {
  if (!windows_.preflight() || items.empty() || isCapturing_) return {};
  isCapturing_ = true;
  return run(loop_, shared_from_this(), std::move(items));
}

Task StatusIconCapturer::run(MainLoop&, Self self, std::vector<MenuBarItemInfo> items) {
  const Registration ending([self] { self->isCapturing_ = false; });
  const Answer<std::optional<std::vector<CapturableWindow>>> list{
      [self](auto callback) { self->windows_.windows(std::move(callback)); }};
  auto windows = co_await list;
  if (!windows) co_return;
  std::erase_if(*windows, [](const auto& window) { return !isStatusItemWindow(window); });
  for (const MenuBarItemInfo& item : items) {
    const CapturableWindow* const window = windowOf(item, *windows);
    if (!window) continue;
    const Answer<std::optional<Bitmap>> picture{[self, window = *window](auto callback) {
      self->windows_.capture(window.id, pixels(window.frame.width), pixels(window.frame.height),
                             std::move(callback));
    }};
    auto captured = co_await picture;
    if (captured && captured->isValid()) self->store(item.bundleId, std::move(*captured));
  }
}

void StatusIconCapturer::store(const std::string& bundleId, Bitmap bitmap) {
  if (auto trimmed = trimmingTransparentBorder(bitmap)) bitmap = std::move(*trimmed);
  monochromeCache_[bundleId] = isMonochrome(bitmap);
  if (const auto name = fileName(bundleId)) files_.write(*name, bitmap);
  memoryCache_[bundleId] = pictureOf(std::move(bitmap));
}

std::optional<Picture> StatusIconCapturer::cachedIcon(const std::string& bundleId) {
  if (const auto known = memoryCache_.find(bundleId); known != memoryCache_.end()) {
    return known->second;
  }
  const auto name = fileName(bundleId);
  auto bitmap = name ? files_.read(*name) : std::nullopt;
  if (!bitmap || !bitmap->isValid()) return std::nullopt;
  return memoryCache_.emplace(bundleId, pictureOf(std::move(*bitmap))).first->second;
}

bool StatusIconCapturer::isMonochromeIcon(const std::string& bundleId) {
  const auto picture = cachedIcon(bundleId);
  if (!picture) return false;
  const auto known = monochromeCache_.find(bundleId);
  if (known != monochromeCache_.end()) return known->second;
  return monochromeCache_[bundleId] = isMonochrome(*picture->bitmap);
}

}  // namespace tarnwick
