#include "utility/loop/qt_application.h"

#include <QGuiApplication>

namespace tarnwick {

QtApplication::QtApplication() {
  QGuiApplication::setApplicationDisplayName("Tarnwick");
  QGuiApplication::setDesktopFileName(identifier);
  // The windows' class, which the desktop entry names.
  QCoreApplication::setApplicationName("tarnwick");
}

void QtApplication::setActivationPolicy(ActivationPolicy policy) {
  QGuiApplication::setQuitOnLastWindowClosed(policy == ActivationPolicy::regular);
}

std::optional<std::string> QtApplication::bundleInfo(std::string_view key) const {
  if (key == bundleinfo::shortVersion) return TARNWICK_VERSION;
  if (key == bundleinfo::build) return TARNWICK_BUILD;
  return std::nullopt;
}

void QtApplication::openNewInstance(std::function<void()> reported) {
  hasSuccessor_ = true;
  QMetaObject::invokeMethod(this, std::move(reported), Qt::QueuedConnection);
}

void QtApplication::terminate() {
  QCoreApplication::quit();
}

}  // namespace tarnwick
