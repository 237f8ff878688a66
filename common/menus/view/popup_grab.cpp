#include "common/menus/view/popup_grab.h"

#include <QGuiApplication>
#include <QMenu>
#include <QWindow>
#include <chrono>
#include <utility>

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 50ms;
constexpr int maximumAttempts = 20;

}  // namespace

PopupGrab::PopupGrab(QObject* parent) : QObject(parent) {
  retry_.setSingleShot(true);
  retry_.callOnTimeout(this, &PopupGrab::tryOnce);
}

void PopupGrab::hold(QMenu* menu, std::function<void()> giveUp) {
  menu_ = menu;
  giveUp_ = std::move(giveUp);
  attempts_ = 0;
  tryOnce();
}

void PopupGrab::tryOnce() {
  if (!menu_ || !menu_->isVisible() || QGuiApplication::platformName() != QLatin1String("xcb")) {
    return;
  }
  // The toolkit grabs only once, and neither device when one of them is taken.
  QWindow* const window = menu_->windowHandle();
  const bool pointer = window->setMouseGrabEnabled(true);
  const bool keyboard = window->setKeyboardGrabEnabled(true);
  if (pointer && keyboard) return;
  if (++attempts_ < maximumAttempts) {
    retry_.start(retryInterval);
  } else if (auto giveUp = std::exchange(giveUp_, nullptr)) {
    giveUp();
  }
}

}  // namespace tarnwick
