#include "utility/bar_client/bar_pointer_events.h"

#include <QPointF>

namespace tarnwick {

namespace {

// As org.tarnwick.MenuBar1.PostPointerEvent counts them.
uint number(PointerEventType type) {
  switch (type) {
    case PointerEventType::leftDown:
      return 1;
    case PointerEventType::leftDragged:
      return 2;
    case PointerEventType::leftUp:
      return 3;
  }
  return 0;
}

}  // namespace

// Written to the bus by QtDBus's own thread: it leaves also when this one is blocked afterwards.
void BarPointerEvents::post(const PointerEvent& event) {
  bar_.send(QStringLiteral("PostPointerEvent"),
            {number(event.type), QPointF(event.location.x, event.location.y), uint{event.flags}});
}

}  // namespace tarnwick
