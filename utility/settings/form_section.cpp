#include "utility/settings/form_section.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include "utility/settings/form_controls.h"
#include "utility/style/tones.h"

namespace tarnwick {

namespace {

constexpr qreal cornerRadius = 10;
constexpr int headerSpacing = 6;  // between a header and its card
constexpr int rowSpacing = 8;
constexpr double calloutScale = 0.95;

// The ground of the rows with a hairline between each two.
class Card : public QWidget {
 public:
  explicit Card(QWidget* parent) : QWidget(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override {
    const Tones tones = tonesOf(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tones.line, 1));
    painter.setBrush(tones.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    bool first = true;
    for (int i = 0; i < layout()->count(); ++i) {
      const QWidget* const row = layout()->itemAt(i)->widget();
      if (row->isHidden()) continue;
      const QRect line(FormSection::rowPadding, row->y() - 1, width() - FormSection::rowPadding - 1,
                       1);
      if (!std::exchange(first, false) && event->rect().intersects(line)) {
        painter.fillRect(QStyle::visualRect(layoutDirection(), rect(), line), tones.line);
      }
    }
  }
};

}  // namespace

Note::Note(const QString& text, int width, Style style, QWidget* parent)
    : QLabel(parent), width_(width) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setText(text);
  if (style != Style::normal) setForegroundRole(QPalette::PlaceholderText);
  if (style == Style::callout && font().pointSizeF() > 0) {
    QFont callout = font();
    callout.setPointSizeF(callout.pointSizeF() * calloutScale);
    setFont(callout);
  }
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

FormSection::FormSection(const QString& header, QWidget* parent)
    : QWidget(parent), card_(new Card(this)), rows_(new QVBoxLayout(card_)) {
  setFixedWidth(width);
  setAccessibleName(header);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(headerSpacing);
  if (!header.isEmpty()) {
    auto* const label = new QLabel(header);
    QFont bold = label->font();
    bold.setWeight(QFont::DemiBold);
    label->setFont(bold);
    label->setContentsMargins(rowPadding - 2, 0, 0, 0);
    column->addWidget(label);
  }
  column->addWidget(card_);
  rows_->setContentsMargins(0, 0, 0, 0);
  rows_->setSpacing(1);
}

QHBoxLayout* FormSection::addRow(int index) {
  auto* const row = new QWidget(card_);
  auto* const content = new QHBoxLayout(row);
  content->addStrut(rowHeight - 2 * rowMargin);
  // Controls bring room for their rings with them.
  content->setContentsMargins(rowPadding - ringRoom, rowMargin, rowPadding - ringRoom, rowMargin);
  content->setSpacing(rowSpacing - ringRoom);
  rows_->insertWidget(index, row);
  return content;
}

QHBoxLayout* FormSection::addRow(const QString& title, const QList<QWidget*>& controls) {
  QHBoxLayout* const row = addRow();
  auto* const label = new QLabel(title);
  label->setTextFormat(Qt::PlainText);
  label->setContentsMargins(ringRoom, 0, 0, 0);
  if (!controls.isEmpty()) label->setBuddy(controls.front());  // for screen readers
  row->addWidget(label);
  row->addStretch();
  for (QWidget* const control : controls) row->addWidget(control);
  return row;
}

void FormSection::removeRow(QWidget* content) {
  QWidget* const row = content->parentWidget();
  rows_->removeWidget(row);
  row->hide();
  row->deleteLater();
}

}  // namespace tarnwick
