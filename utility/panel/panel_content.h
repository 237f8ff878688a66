#pragma once

#include <QAbstractButton>
#include <QIcon>
#include <QWidget>
#include <optional>
#include <vector>

#include "core/panel/panel_view.h"

class QLabel;

namespace tarnwick {

// One entry of the panel: its picture in a box that is pressable everywhere. A button to assistive
// technology, named as the application.
class PanelCell : public QAbstractButton {
  Q_OBJECT

 public:
  PanelCell(const PanelSection::Entry& entry, bool statusStyle, QWidget* parent);

 signals:
  // `centre` is the cell's centre x in points of the primary monitor.
  void tapped(bool rightClick, double centre);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void tap(bool rightClick);
  QPixmap picture() const;

  const PanelSection::Entry entry_;
  const double iconSide_;
  std::optional<QIcon> icon_;  // once it is drawn
};

// The panel's view laid out by its measures: its own size is the fitting one,
// without the window's margin. Immutable.
class PanelContent : public QWidget {
  Q_OBJECT

 public:
  PanelContent(const PanelView& view, QWidget* parent);

  QSize sizeHint() const override { return size_; }
  // Which part of its width can be seen; the sections' titles keep inside it.
  void setVisibleWidth(int left, int width);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Title {
    QLabel* label;
    QString text;
  };

  int addEmptyText(int top);
  int addTitle(const QString& text, int top);
  int addSection(const PanelSection& section, const PanelView& view, int top);
  QRect reserve(int top, QSize size);

  QSize size_;  // so far
  std::vector<Title> titles_;
};

}  // namespace tarnwick
