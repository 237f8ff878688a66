#include "utility/services.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <chrono>
#include <utility>

#include "common/files/json_file.h"
#include "utility/x11/windows.h"

namespace tarnwick {

namespace {

// Applications claim their bus name about when they show their item. The pass that follows an
// appearance comes later than this.
constexpr auto nameClaimed = std::chrono::seconds(2);

}  // namespace

Services::Services(const QDBusConnection& bus, std::string program)
    : screens_(x11::activeWindowCentre, x11::workArea),
      busNames_(bus, [this] { identities_.sourcesChanged(); }),
      bar_(loop_, bus),
      workspace_(bar_, snapshots_, identities_, application_.bundleIdentifier(),
                 [this] {
                   busNames_.refresh();  // for the next look at the same processes
                   return clientWindows_.processes();
                 }),
      pictures_(desktop::dataHome() / "Tarnwick" / "iconcache-2x"),
      presses_([this](QPoint rootPixels) { return isOurItem(rootPixels); }),
      locks_(bus),
      loginItem_(QtApplication::identifier, std::move(program)) {
  QObject::connect(&bar_, &BarConnection::applicationAppeared, &busNames_,
                   [this] { QTimer::singleShot(nameClaimed, &busNames_, &BusNames::refresh); });
  QObject::connect(&defaultsNotifier_, &QSocketNotifier::activated,
                   [this] { defaults_.checkForChange(); });
}

// Whether one of our items in the bar stands there.
bool Services::isOurItem(QPoint rootPixels) {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (!primary) return false;
  const QPoint origin = primary->geometry().topLeft();
  const QPointF points = QPointF(rootPixels - origin) / primary->devicePixelRatio();
  return statusBar_.hasItemAt({points.x(), points.y()});
}

// For a window that is about to be made.
Recording Services::recording() {
  locks_.listen();
  using Callback = std::function<void()>;
  return {x11::KeyboardGrab::begin,
          {[this](Callback end) { return presses_.addPressMonitor(std::move(end)); },
           [this](Callback end) { return locks_.onLocking(std::move(end)); }}};
}

Services::~Services() {
  loop_.clear();
}

}  // namespace tarnwick
