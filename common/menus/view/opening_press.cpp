#include "common/menus/view/opening_press.h"

#include <QMenu>
#include <QMouseEvent>
#include <algorithm>

namespace tarnwick {

void OpeningPress::watch(QMenu& menu) {
  std::erase_if(menus_, [](const auto& known) { return !known; });
  menus_.emplace_back(&menu);
  menu.installEventFilter(this);
}

bool OpeningPress::eventFilter(QObject*, QEvent* event) {
  const auto mouse = [event]() -> const QMouseEvent& { return *static_cast<QMouseEvent*>(event); };
  switch (event->type()) {
    case QEvent::MouseButtonDblClick:
      if (!anyPress_ && isInside(mouse())) return true;
      [[fallthrough]];
    case QEvent::MouseButtonPress:
      anyPress_ = true;
      pressed_ |= mouse().button();
      return false;
    case QEvent::MouseButtonRelease:
      return !pressed_.testFlag(mouse().button());
    default:
      return false;
  }
}

bool OpeningPress::isInside(const QMouseEvent& event) const {
  return std::any_of(menus_.begin(), menus_.end(), [&](const auto& menu) {
    return menu && menu->isVisible() && menu->geometry().contains(event.globalPosition().toPoint());
  });
}

}  // namespace tarnwick
