#include "utility/settings/focus_follower.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>
#include <algorithm>

namespace tarnwick {

namespace {

constexpr int margin = 8;  // points above and below, so that the row is seen to go on

}  // namespace

FocusFollower::FocusFollower(QScrollArea& area) : area_(area) {
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget*, QWidget* focused) { follow(focused); });
}

void FocusFollower::follow(QWidget* focused) {
  if (!focused || !area_.widget()->isAncestorOf(focused)) return;
  if (QGuiApplication::mouseButtons() == Qt::NoButton) {
    bringIntoSight(*focused);
  } else {
    focused->installEventFilter(this);
  }
}

bool FocusFollower::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::MouseButtonRelease) return false;
  watched->removeEventFilter(this);
  const QPointer<QWidget> control = qobject_cast<QWidget*>(watched);
  const auto scroll = [this, control] {
    if (control && control->hasFocus()) bringIntoSight(*control);
  };
  QMetaObject::invokeMethod(this, scroll, Qt::QueuedConnection);
  return false;
}

void FocusFollower::bringIntoSight(const QWidget& control) {
  QScrollBar* const bar = area_.verticalScrollBar();
  const int top = control.mapTo(area_.widget(), QPoint()).y() - margin;
  const int bottom = top + control.height() + 2 * margin;
  bar->setValue(std::min(std::max(bar->value(), bottom - area_.viewport()->height()), top));
}

}  // namespace tarnwick
