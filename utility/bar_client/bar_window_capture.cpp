#include "utility/bar_client/bar_window_capture.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QPointer>
#include <chrono>
#include <memory>
#include <utility>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

using namespace std::chrono_literals;

namespace {

constexpr Duration deadline = 2s;  // for a bar that is stopped or gone
constexpr Duration pauseAfterSilence = 1s;
constexpr uint largestSide = 4096;

// The answer to Render: width, height, premultiplied red, green, blue, alpha.
std::optional<Bitmap> parseBitmap(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("(uuay)")) {
    return std::nullopt;
  }
  const auto picture = reply.arguments().constFirst().value<QDBusArgument>();
  uint width = 0;
  uint height = 0;
  QByteArray bytes;
  picture.beginStructure();
  picture >> width >> height >> bytes;
  picture.endStructure();
  if (width == 0 || height == 0 || width > largestSide || height > largestSide) {
    return std::nullopt;
  }
  Bitmap bitmap{static_cast<int>(width), static_cast<int>(height), {bytes.begin(), bytes.end()}};
  return bitmap.isValid() ? std::optional(std::move(bitmap)) : std::nullopt;
}

std::optional<std::vector<CapturableWindow>> parseWindows(const QDBusMessage& reply) {
  const auto items = parseBarItems(reply);
  if (!items) return std::nullopt;
  std::vector<CapturableWindow> windows;
  windows.reserve(items->size());
  for (const BarItem& item : *items) windows.push_back({item.id, item.frame});
  return windows;
}

}  // namespace

bool BarWindowCapture::preflight() {
  return bar_.hasAccess(barservice::screenCapture);
}

void BarWindowCapture::request() {
  if (!preflight()) bar_.requestAccess(barservice::screenCapture);
}

// The callback goes to whoever comes first, the answer or the deadline. A silent bar is not asked
// for more in that second, so that a run of questions ends with the first deadline.
template <class T>
void BarWindowCapture::ask(const QString& method, const QVariantList& arguments,
                           std::function<std::optional<T>(const QDBusMessage&)> parse,
                           std::function<void(std::optional<T>)> callback) {
  if (!bar_.isPresent() || loop_.now() < blockedUntil_) {
    loop_.post([callback = std::move(callback)] { callback(std::nullopt); });
    return;
  }
  struct Waiting {
    std::function<void(std::optional<T>)> callback;
    Registration timer;
  };
  const auto waiting = std::make_shared<Waiting>();
  waiting->callback = std::move(callback);
  const auto deliver = [waiting](std::optional<T> value) {
    waiting->timer.reset();
    if (const auto once = std::exchange(waiting->callback, nullptr)) once(std::move(value));
  };
  waiting->timer = loop_.callAfter(deadline, [deliver, self = QPointer(this)] {
    if (self) self->blockedUntil_ = self->loop_.now() + pauseAfterSilence;
    deliver(std::nullopt);
  });
  bar_.call(method, arguments, this,
            [this, deliver, parse = std::move(parse)](const QDBusMessage& reply) {
              blockedUntil_ = {};
              deliver(parse(reply));
            });
}

void BarWindowCapture::windows(
    std::function<void(std::optional<std::vector<CapturableWindow>>)> callback) {
  ask<std::vector<CapturableWindow>>(QStringLiteral("Items"), {}, parseWindows,
                                     std::move(callback));
}

void BarWindowCapture::capture(std::uint64_t window, int pixelWidth, int pixelHeight,
                               std::function<void(std::optional<Bitmap>)> callback) {
  ask<Bitmap>(QStringLiteral("Render"),
              {qulonglong{window}, static_cast<uint>(pixelWidth), static_cast<uint>(pixelHeight)},
              parseBitmap, std::move(callback));
}

}  // namespace tarnwick
