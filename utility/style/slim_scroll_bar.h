#pragma once

#include <QScrollBar>

namespace tarnwick {

// A scroll bar that is only a handle, and nothing at all when there is nothing to scroll.
// Takes part of a margin, so that the content looks the same with and without it.
class SlimScrollBar : public QScrollBar {
  Q_OBJECT

 public:
  static constexpr int thickness = 12;  // points

  explicit SlimScrollBar(Qt::Orientation orientation = Qt::Vertical, QWidget* parent = nullptr);
  QSize sizeHint() const override { return {thickness, thickness}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnwick
