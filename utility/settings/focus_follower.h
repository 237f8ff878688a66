#pragma once

#include <QPointer>
#include <QScrollArea>

namespace tarnwick {

// Scrolls a form so that the control with the focus is wholly in sight. What the pointer has
// pressed stays below it until the release.
class FocusFollower : public QObject {
 public:
  explicit FocusFollower(QScrollArea& area);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void follow(QWidget* focused);
  void bringIntoSight(const QWidget& control);

  QScrollArea& area_;
};

}  // namespace tarnwick
