#pragma once

#include <QObject>

namespace tarnwick::bar {

// Measures of the row that all kinds of items share, in points. One for the whole process, set from
// the bar's settings.
class Metrics : public QObject {
  Q_OBJECT

 public:
  static constexpr double padding = 4;        // free room on each side of an icon or label
  static constexpr double minBarHeight = 24;  // the bar is higher when its font needs it
  static constexpr double defaultIconSide = 18;

  static Metrics& shared();

  double iconSide() const { return iconSide_; }
  // Clamped to 12 ... 32.
  void setIconSide(double points);

 signals:
  // Icons take another size now: lengths and pictures have to follow.
  void changed();

 private:
  Metrics() = default;

  double iconSide_ = defaultIconSide;
};

}  // namespace tarnwick::bar
