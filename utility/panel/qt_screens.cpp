#include "utility/panel/qt_screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace tarnwick {

namespace {

// Qt scales a screen's size but leaves its corner where it is in pixels.
QRect inPixels(const QScreen& screen) {
  return {screen.geometry().topLeft(),
          (QSizeF(screen.geometry().size()) * screen.devicePixelRatio()).toSize()};
}

}  // namespace

// Points from the primary screen's corner. Qt's own available geometry misses the bar's strut.
Screen QtScreens::describe(const QScreen& screen) const {
  const QPoint origin = QGuiApplication::primaryScreen()->geometry().topLeft();
  const QRect frame = screen.geometry();
  QRectF visible(frame);
  const QRect pixels = inPixels(screen);
  if (const QRect left = workArea_().value_or(pixels) & pixels; !left.isEmpty()) {
    const double scale = screen.devicePixelRatio();
    visible = QRectF(QPointF(frame.topLeft()) + QPointF(left.topLeft() - pixels.topLeft()) / scale,
                     QSizeF(left.size()) / scale);
  }
  const auto rect = [origin](const QRectF& area) {
    return Rect{area.x() - origin.x(), area.y() - origin.y(), area.width(), area.height()};
  };
  return {rect(frame), rect(visible)};
}

std::vector<Screen> QtScreens::all() const {
  std::vector<Screen> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {  // the primary one comes first
    screens.push_back(describe(*screen));
  }
  return screens;
}

std::optional<Screen> QtScreens::main() const {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (!primary) return std::nullopt;
  const QScreen* found = primary;
  if (const auto centre = focus_()) {
    for (const QScreen* screen : QGuiApplication::screens()) {
      if (inPixels(*screen).contains(*centre)) found = screen;
    }
  }
  return describe(*found);
}

}  // namespace tarnwick
