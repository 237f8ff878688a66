#include "bar/x11/active_application.h"

#include <QCoreApplication>
#include <QTimer>
#include <chrono>

#include "common/x11/process_of_window.h"
#include "common/x11/window_hints.h"

namespace tarnwick::bar::x11 {

namespace {

// Window managers change the active window to none and on to the next one within this time.
constexpr std::chrono::milliseconds settleTime{20};

}  // namespace

ActiveApplication::ActiveApplication(desktop::IdentityResolver& identities, QObject* parent)
    : QObject(parent), identities_(identities) {
  if (!connection()) return;
  qApp->installNativeEventFilter(this);
  selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
  schedule();
}

ActiveApplication::~ActiveApplication() = default;

bool ActiveApplication::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
  const auto* change = static_cast<xcb_property_notify_event_t*>(message);
  if (change->window != rootWindow()) return false;
  if (change->atom == atoms().netActiveWindow) schedule();
  if (change->atom == atoms().netClientList) identities_.sourcesChanged();
  return false;
}

void ActiveApplication::schedule() {
  if (std::exchange(scheduled_, true)) return;
  QTimer::singleShot(settleTime, this, &ActiveApplication::update);
}

void ActiveApplication::update() {
  scheduled_ = false;
  const auto active = PropertyRead(rootWindow(), atoms().netActiveWindow, 4).numbers();
  const xcb_window_t window = active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
  if (window == std::exchange(window_, window)) return;

  QString name;
  if (window != XCB_WINDOW_NONE) {
    ProcessOfWindow process(window);
    WindowHintsRead hints(window);
    const qint32 pid = process.pid();
    if (pid != QCoreApplication::applicationPid()) {
      const auto identity = pid > 0 ? identities_.identify(pid) : std::nullopt;
      if (identity) name = QString::fromStdString(identity->name);
      if (name.isEmpty()) name = QString::fromStdString(hints.take().windowClass);
    }
  }
  if (name == name_) return;
  name_ = name;
  emit changed();
}

}  // namespace tarnwick::bar::x11
