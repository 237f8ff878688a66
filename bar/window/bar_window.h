#pragma once

#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <map>
#include <optional>

#include "bar/board/board.h"
#include "bar/settings/bar_settings.h"
#include "bar/window/clock.h"
#include "common/look/appearance.h"

namespace tarnwick::bar {

// The bar itself: a strip along the primary monitor's upper edge with the active application's name
// on the left, the board's items and the clock on the right. Paints them, and turns what the user
// does with the pointer into events of the board and its items. Its own coordinates are those of
// the bar: points from the monitor's top-left corner.
class BarWindow : public QWidget {
  Q_OBJECT

 public:
  BarWindow(Board& board, const Clock& clock, Appearance& appearance, const BarSettings& settings);

  // In points from the primary monitor's top-left corner.
  QRect frame() const { return frame_; }
  void setApplicationName(const QString& name);

 signals:
  // frame() is another one, or the monitor is: the window has to be put there.
  void frameChanged(const QRect& frame);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // Layout, in bar_window.cpp.
  void followScreen();
  void place();
  void layOutClock();
  void layoutChanged();
  void applyAppearance();
  QRectF cellOf(ItemId id) const;  // where it is drawn, a dragged one under the pointer
  QRectF nameRect() const;  // room for the application's name; empty when there is too little
  void updateItem(ItemId id);

  void paintName(QPainter& painter);
  void paintItem(QPainter& painter, ItemId id, const QRectF& cell, double scale);
  void paintClock(QPainter& painter);

  // The user's hand, in bar_window_input.cpp.
  std::optional<ItemId> itemAt(QPointF at) const;
  void leftButton(Board::Phase phase, const QMouseEvent& event);
  void setHovered(std::optional<ItemId> id);
  void setPressed(std::optional<ItemId> id);
  void letGo();
  void followDrag();
  void showToolTip(const QPoint& at);

  Board& board_;
  const Clock& clock_;
  Appearance& appearance_;
  const BarSettings& settings_;

  QRect frame_;
  QString applicationName_;
  QRectF clockRect_;
  QRectF paintedNameRect_;
  std::map<ItemId, QRectF> painted_;  // where each item was last drawn or asked to be
  QMetaObject::Connection screenWatch_;
  QTimer screenTimer_;

  std::optional<ItemId> hovered_;
  std::optional<ItemId> pressed_;
  std::optional<std::pair<Qt::MouseButton, ItemId>> otherPress_;  // right or middle button
  bool keyboardGrabbed_ = false;
};

}  // namespace tarnwick::bar
