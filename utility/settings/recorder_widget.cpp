#include "utility/settings/recorder_widget.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "utility/settings/alert_box.h"
#include "utility/settings/keyed_actions.h"
#include "utility/style/form_painting.h"
#include "utility/style/tones.h"

namespace tarnwick {

namespace {

constexpr qreal cancelSide = 14;
constexpr qreal cancelMargin = 6;

}  // namespace

RecorderWidget::RecorderWidget(
    std::variant<KeyboardShortcuts::Name, KeyboardShortcuts::Binding> storage, const QString& title,
    Recording recording, Recorder::OnChange onChange)
    : Field(static_cast<int>(Recorder::minimumWidth), title),
      recording_(std::move(recording)),
      recorder_(*this, std::move(storage), std::move(onChange)) {
  setReadOnly(true);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setContextMenuPolicy(Qt::NoContextMenu);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::ArrowCursor);
  recorder_.updateStringValue();
}

RecorderWidget::~RecorderWidget() {
  qApp->removeEventFilter(this);
}

void RecorderWidget::show(const KeyboardShortcuts::RecorderAppearance& appearance) {
  const bool began = appearance.isRecording && !appearance_.isRecording;
  appearance_ = appearance;
  setText(QString::fromStdString(appearance.text));
  setAccessibleDescription(QString::fromStdString(appearance.placeholder));
  if (began) {
    beginWatching();
  } else if (!appearance.isRecording) {
    qApp->removeEventFilter(this);
    watches_.clear();
  }
  update();
}

void RecorderWidget::beginWatching() {
  const auto end = [this] { recorder_.windowDidResignKey(); };
  for (const auto& watch : recording_.ends) watches_.push_back(watch(end));
  watches_.push_back(recording_.grabKeyboard(
      window()->winId(), [this](const auto& event) { return recorder_.keyDown(event); }, end));
  qApp->installEventFilter(this);
}

// An alert that has just gone may still be what is active: then the focus comes with the window.
void RecorderWidget::makeFirstResponder() {
  window()->activateWindow();
  setFocus(Qt::OtherFocusReason);
  awaitsWindow_ = !hasFocus();
  if (hasFocus()) recorder_.becomeFirstResponder();  // it may have been idle with the focus
}

void RecorderWidget::resignFirstResponder() {
  awaitsWindow_ = false;
  clearFocus();
}

void RecorderWidget::beep() {
  QApplication::beep();
}

Registration RecorderWidget::present(const Alert& alert, std::function<void(int)> answered) {
  return presentAlert(*window(), alert, std::move(answered));
}

KeyedMenu RecorderWidget::mainMenu() {
  return keyedMenu(window()->actions());
}

bool RecorderWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window_ && event->type() == QEvent::WindowDeactivate) {
    recorder_.windowDidResignKey();
    if (hasFocus()) clearFocus();
  } else if (watched == window_ && event->type() == QEvent::WindowActivate) {
    recorder_.preventBecomingKey();
  } else if (event->type() == QEvent::MouseButtonRelease && watched->isWidgetType()) {
    const auto* const release = static_cast<QMouseEvent*>(event);
    const QRectF shape = shapeOf(*this);
    const QPointF position = mapFromGlobal(release->globalPosition()) - shape.topLeft();
    recorder_.mouseUp({position.x(), position.y()}, {shape.width(), shape.height()});
  }
  return false;
}

void RecorderWidget::showEvent(QShowEvent* event) {
  if (window_) window_->removeEventFilter(this);
  window_ = window();
  window_->installEventFilter(this);
  recorder_.preventBecomingKey();
  KeyboardShortcuts::systemShortcuts();  // read by the time something is typed
  Field::showEvent(event);
}

void RecorderWidget::hideEvent(QHideEvent* event) {
  recorder_.endRecording();
  resignFirstResponder();
  Field::hideEvent(event);
}

void RecorderWidget::focusInEvent(QFocusEvent* event) {
  Field::focusInEvent(event);
  const bool wanted = std::exchange(awaitsWindow_, false);
  if (comesByItself(event->reason()) && !wanted) {
    clearFocus();
  } else {
    recorder_.becomeFirstResponder();
  }
}

// Not by the user's wish.
bool RecorderWidget::comesByItself(Qt::FocusReason reason) const {
  if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return true;
  const bool byKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
  return byKeyboard && !recorder_.canBecomeKeyView();
}

void RecorderWidget::focusOutEvent(QFocusEvent* event) {
  recorder_.endRecording();
  Field::focusOutEvent(event);
  // It would be back when the pop-up closes.
  if (event->reason() == Qt::PopupFocusReason) clearFocus();
}

void RecorderWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && appearance_.hasCancelButton &&
      cancelButton().adjusted(-4, -4, 4, 4).contains(event->position())) {
    recorder_.clear();
  } else {
    setFocus(Qt::MouseFocusReason);
    if (hasFocus()) recorder_.becomeFirstResponder();
  }
}

QRectF RecorderWidget::cancelButton() const {
  const QRectF shape = shapeOf(*this);
  const qreal top = shape.center().y() - cancelSide / 2;
  const bool leftToRight = layoutDirection() == Qt::LeftToRight;
  const qreal left =
      leftToRight ? shape.right() - cancelMargin - cancelSide : shape.left() + cancelMargin;
  return {left, top, cancelSide, cancelSide};
}

void RecorderWidget::paintEvent(QPaintEvent*) {
  const Tones tones = tonesOf(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF shape = shapeOf(*this);
  const qreal radius = shape.height() / 2;
  painter.setPen(QPen(tones.fieldLine, 1));
  painter.setBrush(tones.field);
  painter.drawRoundedRect(shape.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
  if (appearance_.isRecording) paintRing(painter, shape, radius, tones.accent);

  const bool empty = appearance_.text.empty();
  painter.setPen(empty ? tones.secondary : tones.text);
  const qreal room = empty ? cancelMargin : cancelMargin + cancelSide;
  const QRectF place = shape.adjusted(room, 0, -room, 0);
  const QString shown = QString::fromStdString(empty ? appearance_.placeholder : appearance_.text);
  painter.drawText(
      place, Qt::AlignCenter | Qt::TextSingleLine,
      fontMetrics().elidedText(shown, Qt::ElideRight, static_cast<int>(place.width())));
  if (!appearance_.hasCancelButton) return;
  const QRectF cancel = cancelButton();
  painter.setPen(Qt::NoPen);
  painter.setBrush(tones.secondary);
  painter.drawEllipse(cancel);
  painter.setPen(QPen(tones.field, 1.5, Qt::SolidLine, Qt::RoundCap));
  const QRectF cross = cancel.adjusted(4.5, 4.5, -4.5, -4.5);
  painter.drawLine(cross.topLeft(), cross.bottomRight());
  painter.drawLine(cross.topRight(), cross.bottomLeft());
}

std::vector<HotkeyRow> makeHotkeyRows(const Recording& recording) {
  using KeyboardShortcuts::Name;
  const auto row = [&recording](const QString& title, const Name& name) {
    return HotkeyRow{title, new RecorderWidget(name, title, recording)};
  };
  return {row(RecorderWidget::tr("Open the panel"), Name::togglePanel()),
          row(RecorderWidget::tr("Show everything briefly"), Name::revealEverything())};
}

}  // namespace tarnwick
