#include "adapters/qt/qt_application.h"

#include <QGuiApplication>

namespace tarnwick {

QtApplication::QtApplication() {
  QGuiApplication::setApplicationDisplayName("Tarnwick");
  QGuiApplication::setDesktopFileName(identifier);
}

void QtApplication::setActivationPolicy(ActivationPolicy policy) {
  QGuiApplication::setQuitOnLastWindowClosed(policy == ActivationPolicy::regular);
}

}  // namespace tarnwick
