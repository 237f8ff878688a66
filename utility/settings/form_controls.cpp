#include "utility/settings/form_controls.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLocale>
#include <QStyle>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include "utility/pictures/theme_icon.h"
#include "utility/style/form_painting.h"
#include "utility/style/tones.h"

namespace tarnwick {

namespace {

constexpr QSize trackSize(34, 20);
constexpr qreal knobInset = 2;
constexpr int labelSpacing = 8;  // between a switch and its label
constexpr int iconSide = 18;
constexpr int iconSpacing = 6;  // between an icon and its text
constexpr qreal cornerRadius = 6;
constexpr int buttonPadding = 14;
constexpr int pickerPadding = 10;
constexpr int arrowRoom = 18;
constexpr int fieldPadding = 6;
constexpr QSize stepSize(18, 13);
constexpr qreal disabledOpacity = 0.4;

QColor fillOf(const Tones& tones, const QWidget& widget, bool pressed) {
  if (pressed) return tones.controlPressed;
  return widget.underMouse() ? tones.controlHover : tones.control;
}

void paintShape(QPainter& painter, const QWidget& widget, const QColor& fill) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(shapeOf(widget), cornerRadius, cornerRadius);
}

void paintRingIfFocused(QPainter& painter, const QWidget& widget, const Tones& tones) {
  if (widget.hasFocus()) paintRing(painter, shapeOf(widget), cornerRadius, tones.accent);
}

// An open arrow head, 7 points wide; `up` is 1 or -1.
void paintArrow(QPainter& painter, QPointF centre, int up, const QColor& color) {
  painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const qreal rise = 1.75 * up;
  painter.drawPolyline(QPolygonF{centre + QPointF(-3.5, rise), centre + QPointF(0, -rise),
                                 centre + QPointF(3.5, rise)});
}

// One half of a stepper.
class StepButton : public QPushButton {
 public:
  StepButton(int direction, QWidget* parent) : QPushButton(parent), direction_(direction) {
    setAccessibleName(direction > 0 ? Stepper::tr("Increase") : Stepper::tr("Decrease"));
    setFixedSize(stepSize);
    setFocusPolicy(Qt::NoFocus);
    setAutoRepeat(true);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Tones tones = tonesOf(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The outer half of a rounded shape as high as both.
    const QRectF whole = QRectF(rect()).adjusted(0, direction_ > 0 ? 0 : -height(), 0,
                                                 direction_ > 0 ? height() : 0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? fillOf(tones, *this, isDown()) : tones.control);
    painter.drawRoundedRect(whole, cornerRadius - 1, cornerRadius - 1);
    if (!isEnabled()) painter.setOpacity(disabledOpacity);
    const QPointF centre = QRectF(rect()).center() + QPointF(0, direction_ > 0 ? 0.5 : -0.5);
    paintArrow(painter, centre, direction_, tones.text);
  }

 private:
  int direction_;
};

}  // namespace

void paintRing(QPainter& painter, const QRectF& shape, qreal radius, const QColor& color) {
  painter.setPen(QPen(color, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(shape.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
}

QRectF shapeOf(const QWidget& widget) {
  return QRectF(widget.rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
}

int controlHeight(const QWidget& widget) {
  return std::max(26, widget.fontMetrics().height() + 10);
}

Switch::Switch(const QString& label, Place place, QWidget* parent)
    : QCheckBox(parent), label_(label.simplified()), place_(place) {
  setAccessibleName(label_);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(place == Place::leading ? QSizePolicy::Maximum : QSizePolicy::Expanding,
                QSizePolicy::Fixed);
}

void Switch::setLabelIcon(const std::optional<ThemeIcon>& icon) {
  hasIcon_ = true;
  themeIcon_ = icon;
  icon_.reset();
  updateGeometry();
  update();
}

QSize Switch::sizeHint() const {
  const int text = fontMetrics().horizontalAdvance(label_) + 1;
  const QSize smallest = minimumSizeHint();
  return {smallest.width() + text, smallest.height()};
}

QSize Switch::minimumSizeHint() const {
  const int width = 2 * ringRoom + trackSize.width() + labelSpacing;
  const int height = std::max({trackSize.height(), fontMetrics().height(), iconSide});
  return {width + (hasIcon_ ? iconSide + iconSpacing : 0), height + 2 * ringRoom};
}

void Switch::paintEvent(QPaintEvent*) {
  const Tones tones = tonesOf(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRect inside = rect().adjusted(ringRoom, 0, -ringRoom, 0);
  const auto placed = [&](const QRect& logical) {
    return QStyle::visualRect(layoutDirection(), rect(), logical);
  };
  const bool leads = place_ == Place::leading;
  const int trackLeft = leads ? inside.left() : inside.right() + 1 - trackSize.width();
  const QRectF track =
      placed(QRect(QPoint(trackLeft, (height() - trackSize.height()) / 2), trackSize));
  const qreal radius = track.height() / 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked() ? tones.accent : tones.track);
  painter.drawRoundedRect(track, radius, radius);
  const qreal knobSide = track.height() - 2 * knobInset;
  const bool knobAtRight = isChecked() == (layoutDirection() == Qt::LeftToRight);
  const qreal knobLeft =
      knobAtRight ? track.right() - knobInset - knobSide : track.left() + knobInset;
  painter.setBrush(QColor(0, 0, 0, 40));
  painter.drawEllipse(QRectF(knobLeft, track.top() + knobInset + 0.75, knobSide, knobSide));
  painter.setBrush(tones.knob);
  painter.drawEllipse(QRectF(knobLeft, track.top() + knobInset, knobSide, knobSide));
  if (hasFocus()) paintRing(painter, track, radius, tones.accent);

  int textLeft = leads ? trackLeft + trackSize.width() + labelSpacing : 0;
  const int textRight = leads ? width() : trackLeft - labelSpacing;
  if (hasIcon_) {
    if (!icon_) icon_ = themeIcon_ ? iconOf(*themeIcon_) : QIcon();
    const QRect place(textLeft, (height() - iconSide) / 2, iconSide, iconSide);
    if (!icon_->isNull()) {
      painter.drawPixmap(placed(place), applicationPixmap(*icon_, iconSide, devicePixelRatioF()));
    }
    textLeft += iconSide + iconSpacing;
  }
  const QRect text = placed(QRect(textLeft, 0, textRight - textLeft, height()));
  painter.setPen(tones.text);
  // The text stays beside its switch, whichever way it reads.
  const auto side = layoutDirection() == Qt::LeftToRight ? Qt::AlignLeft : Qt::AlignRight;
  painter.drawText(text, side | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(label_, Qt::ElideRight, text.width()));
}

FormButton::FormButton(const QString& label, QWidget* parent) : QPushButton(label, parent) {
  setFocusPolicy(Qt::TabFocus);
  setAutoDefault(true);  // so that Return presses it, too
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize FormButton::sizeHint() const {
  const int width = fontMetrics().horizontalAdvance(text()) + 2 * (buttonPadding + ringRoom);
  return {std::max(width, minimumWidth()), controlHeight(*this) + 2 * ringRoom};
}

void FormButton::paintEvent(QPaintEvent*) {
  const Tones tones = tonesOf(palette());
  QPainter painter(this);
  const QColor accent = isDown() || underMouse() ? tones.accentPressed : tones.accent;
  paintShape(painter, *this, isProminent_ ? accent : fillOf(tones, *this, isDown()));
  painter.setPen(isProminent_ ? tones.onAccent : tones.text);
  painter.drawText(shapeOf(*this), Qt::AlignCenter | Qt::TextSingleLine, text());
  paintRingIfFocused(painter, *this, tones);
}

Picker::Picker(const QString& accessibleName, QWidget* parent) : QComboBox(parent) {
  setAccessibleName(accessibleName);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize Picker::sizeHint() const {
  int text = 0;
  for (int i = 0; i < count(); ++i) {
    text = std::max(text, fontMetrics().horizontalAdvance(itemText(i)));
  }
  return {text + 2 * pickerPadding + arrowRoom + 2 * ringRoom, controlHeight(*this) + 2 * ringRoom};
}

void Picker::paintEvent(QPaintEvent*) {
  const Tones tones = tonesOf(palette());
  QPainter painter(this);
  paintShape(painter, *this, fillOf(tones, *this, view() && view()->isVisible()));
  const QRect shape = shapeOf(*this).toRect();
  const auto placed = [&](const QRect& logical) {
    return QStyle::visualRect(layoutDirection(), rect(), logical);
  };
  painter.setPen(tones.text);
  painter.drawText(placed(shape.adjusted(pickerPadding, 0, -arrowRoom, 0)),
                   Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, currentText());
  const QRect arrows =
      placed(QRect(shape.right() - arrowRoom - 1, shape.top(), arrowRoom, shape.height()));
  const QPointF centre = QRectF(arrows).center();
  paintArrow(painter, centre - QPointF(0, 3.5), 1, tones.text);
  paintArrow(painter, centre + QPointF(0, 3.5), -1, tones.text);
  paintRingIfFocused(painter, *this, tones);
}

void Picker::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

Field::Field(int width, const QString& accessibleName, QWidget* parent)
    : QLineEdit(parent), width_(width) {
  setAccessibleName(accessibleName);
  setFrame(false);
  setTextMargins(ringRoom + fieldPadding - 2, 0, ringRoom + fieldPadding - 2, 0);
  QPalette clear;
  clear.setColor(QPalette::Base, Qt::transparent);
  setPalette(clear);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QLineEdit::textChanged, this, [this] {
    if (!hasFocus()) setCursorPosition(0);
  });
}

// A text that is not being edited shows its beginning. Editing goes on when only a pop-up or
// another window has taken the focus.
void Field::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    setCursorPosition(0);
  }
}

QSize Field::sizeHint() const {
  return {width_ + 2 * ringRoom, controlHeight(*this) + 2 * ringRoom};
}

void Field::paintEvent(QPaintEvent* event) {
  const Tones tones = tonesOf(palette());
  {
    QPainter painter(this);
    paintShape(painter, *this, tones.field);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(tones.fieldLine, 1));
    painter.drawRoundedRect(shapeOf(*this).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5,
                            cornerRadius - 0.5);
    paintRingIfFocused(painter, *this, tones);
  }
  QLineEdit::paintEvent(event);
}

NumberField::NumberField(int width, const QString& accessibleName, QWidget* parent)
    : Field(width, accessibleName, parent) {
  setAlignment(Qt::AlignTrailing);
  setMaxLength(9);  // so that any number fits
  connect(this, &QLineEdit::returnPressed, this, &NumberField::commit);
}

void NumberField::setValue(int value) {
  value_ = value;
  if (hasFocus() && isModified()) return;  // being typed into
  const QString shown = locale().toString(value);
  if (shown != text()) setText(shown);
}

void NumberField::commit() {
  bool isNumber = false;
  const int typed = locale().toInt(text().trimmed(), &isNumber);
  setModified(false);
  if (isNumber && typed != value_) emit entered(typed);
  setValue(value_);
}

// Whatever takes the focus: the toolkit's own signal leaves out other windows and pop-ups.
void NumberField::focusOutEvent(QFocusEvent* event) {
  Field::focusOutEvent(event);
  commit();
}

void NumberField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
    emit stepped(event->key() == Qt::Key_Up ? 1 : -1);
    return;
  }
  Field::keyPressEvent(event);
}

Stepper::Stepper(QWidget* parent)
    : QWidget(parent), up_(new StepButton(1, this)), down_(new StepButton(-1, this)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  auto* const both = new QVBoxLayout(this);
  both->setContentsMargins(0, 0, ringRoom, 0);
  both->setSpacing(1);
  both->addWidget(up_);
  both->addWidget(down_);
  connect(up_, &QAbstractButton::clicked, this, [this] { emit stepped(1); });
  connect(down_, &QAbstractButton::clicked, this, [this] { emit stepped(-1); });
}

void Stepper::setEnds(bool canIncrease, bool canDecrease) {
  up_->setEnabled(canIncrease);
  down_->setEnabled(canDecrease);
}

}  // namespace tarnwick
