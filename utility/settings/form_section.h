#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

class QHBoxLayout;

namespace tarnwick {

// Text that wraps at a given width in points.
class Note : public QLabel {
  Q_OBJECT

 public:
  enum class Style { normal, secondary, callout };

  Note(const QString& text, int width, Style style, QWidget* parent = nullptr);

  QSize sizeHint() const override { return {width_, QLabel::heightForWidth(width_)}; }
  QSize minimumSizeHint() const override { return sizeHint(); }
  bool hasHeightForWidth() const override { return false; }

 private:
  int width_;
};

// A card of rows below a header.
class FormSection : public QWidget {
  Q_OBJECT

 public:
  static constexpr int width = 420;      // of the card
  static constexpr int rowPadding = 14;  // between a card's side and its rows' content
  static constexpr int rowHeight = 42;   // at least
  static constexpr int rowMargin = 4;    // above and below a row's content
  static constexpr int contentWidth = width - 2 * rowPadding;

  // Without a header when that is empty.
  explicit FormSection(const QString& header, QWidget* parent = nullptr);

  // An empty row; whatever is put into it is vertically centred, 8 points apart.
  QHBoxLayout* addRow(int index = -1);
  // A title at the leading edge and controls at the trailing one.
  QHBoxLayout* addRow(const QString& title, const QList<QWidget*>& controls);
  // Removes the row that holds this widget.
  void removeRow(QWidget* content);

 private:
  QWidget* card_;
  QVBoxLayout* rows_;
};

}  // namespace tarnwick
