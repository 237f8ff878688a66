#pragma once

#include <QObject>
#include <set>

#include "core/ports/notification_center.h"

namespace tarnwick {

// Posts menuDidBeginTracking and menuDidEndTracking as pop-ups of this process come and go: menus
// with their submenus, lists of combo boxes, whatever takes the keyboard while it is open.
class MenuTracking : public QObject {
 public:
  explicit MenuTracking(NotificationCenter& notifications);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  NotificationCenter& notifications_;
  std::set<const QObject*> open_;
};

}  // namespace tarnwick
