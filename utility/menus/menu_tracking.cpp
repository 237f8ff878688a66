#include "utility/menus/menu_tracking.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace tarnwick {

MenuTracking::MenuTracking(NotificationCenter& notifications) : notifications_(notifications) {
  qApp->installEventFilter(this);
}

bool MenuTracking::eventFilter(QObject* watched, QEvent* event) {
  const bool shown = event->type() == QEvent::Show;
  if ((!shown && event->type() != QEvent::Hide) || !watched->isWidgetType()) return false;
  if (static_cast<const QWidget*>(watched)->windowType() != Qt::Popup) return false;
  const bool before = !open_.empty();
  if (shown) {
    open_.insert(watched);
  } else {
    open_.erase(watched);
  }
  const bool now = !open_.empty();
  if (now != before) notifications_.post({now ? menuDidBeginTracking : menuDidEndTracking, {}});
  return false;
}

}  // namespace tarnwick
