#include "bar/x11/xembed_item.h"

#include <QWidget>
#include <algorithm>
#include <cmath>

#include "bar/board/metrics.h"
#include "bar/board/placeholder.h"

namespace tarnwick::bar::x11 {

namespace {

constexpr int wheelNotch = 120;  // of QWheelEvent's angle delta
constexpr int maxNotches = 10;   // passed on at once
constexpr QPoint parked{-8000, 0};

std::uint8_t xButton(Qt::MouseButton button) {
  return button == Qt::RightButton ? 3 : button == Qt::MiddleButton ? 2 : 1;
}

std::uint16_t xState(Qt::KeyboardModifiers modifiers) {
  std::uint16_t state = 0;
  if (modifiers & Qt::ShiftModifier) state |= XCB_MOD_MASK_SHIFT;
  if (modifiers & Qt::ControlModifier) state |= XCB_MOD_MASK_CONTROL;
  if (modifiers & Qt::AltModifier) state |= XCB_MOD_MASK_1;
  return state;
}

// The icon's top-left corner in the cell, in pixels: the same for the window and for its picture.
QPoint cornerIn(const QRectF& cell, double scale, int side) {
  return {static_cast<int>(std::lround(cell.center().x() * scale - side / 2.0)),
          static_cast<int>(std::lround(cell.center().y() * scale - side / 2.0))};
}

}  // namespace

std::uint16_t iconPixels(const QWidget& bar) {
  return static_cast<std::uint16_t>(
      std::lround(Metrics::shared().iconSide() * bar.devicePixelRatioF()));
}

XembedItem::XembedItem(const IconFacts& facts, const QString& bundleId, QWidget& bar,
                       TraySelection& selection)
    : bar_(bar),
      hint_(facts.windowClass.isEmpty() ? facts.instance : facts.windowClass),
      key_(bundleId + '/' + facts.instance),
      pid_(facts.pid),
      icon_(std::make_unique<EmbeddedIcon>(facts, static_cast<xcb_window_t>(bar.winId()),
                                           iconPixels(bar), bar.palette().color(QPalette::Window))),
      click_(std::make_unique<SentClick>(facts.window, selection)) {
  connect(icon_.get(), &EmbeddedIcon::pictureChanged, this, &Item::contentChanged);
  connect(icon_.get(), &EmbeddedIcon::shownChanged, this, &Item::lengthChanged);
  connect(icon_.get(), &EmbeddedIcon::titleChanged, this, &Item::recordChanged);
  connect(click_.get(), &SentClick::finished, this, [this] {
    const bool lent = std::exchange(lent_, false);
    settle();
    if (lent && icon_) icon_->setPointerThrough(false);
  });
  connect(&Metrics::shared(), &Metrics::changed, this, [this] {
    settle();
    emit lengthChanged();
  });
}

XembedItem::~XembedItem() = default;

void XembedItem::handBack() {
  click_.reset();
  icon_.reset();
}

ItemRecord XembedItem::record() const {
  ItemRecord record;
  record.pid = pid_;
  record.kind = ItemKind::xembed;
  record.hint = hint_;
  record.title = icon_ ? icon_->title() : QString();
  return record;
}

QString XembedItem::key() const {
  return key_;
}

double XembedItem::length() const {
  const bool shown = icon_ && icon_->isShown();
  return shown ? Metrics::shared().iconSide() + 2 * Metrics::padding : 0;
}

void XembedItem::paint(QPainter& painter, const QRectF& cell, double scale,
                       const QColor& foreground) {
  if (!icon_ || (!hasPicture() && isFresh())) return;
  // The picture has the bar window's pixels; another scale (a capture) stretches it.
  const int side = static_cast<int>(std::lround(Metrics::shared().iconSide() * scale));
  const QRectF place(QPointF(cornerIn(cell, scale, side)) / scale, QSizeF(side, side) / scale);
  const bool stretched = side != icon_->picture().width();
  painter.save();
  if (hasPicture()) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform, stretched);
    painter.drawImage(place, icon_->picture());
  } else {
    paintPlaceholder(painter, place, icon_->title().isEmpty() ? hint_ : icon_->title(), foreground);
  }
  painter.restore();
}

void XembedItem::placed(const QRectF& cell) {
  cell_ = cell;
  settle();
}

void XembedItem::settle() {
  if (!icon_ || lent_) return;
  const std::uint16_t side = iconPixels(bar_);
  icon_->setSide(side);
  icon_->move(cell_.isEmpty() ? parked : cornerIn(cell_, bar_.devicePixelRatioF(), side));
}

void XembedItem::clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF,
                         QPointF) {
  if (icon_) click_->start(xButton(button), xState(modifiers));
}

void XembedItem::scrolled(QPoint angleDelta) {
  if (!icon_) return;
  scrollRest_ += angleDelta;
  const int up = scrollRest_.y() / wheelNotch;
  const int left = scrollRest_.x() / wheelNotch;
  scrollRest_ -= QPoint(left, up) * wheelNotch;
  if (up != 0) click_->turnWheel(up > 0 ? 4 : 5, std::min(std::abs(up), maxNotches));
  if (left != 0) click_->turnWheel(left > 0 ? 6 : 7, std::min(std::abs(left), maxNotches));
}

void XembedItem::press(QPointF anchor) {
  if (!icon_ || !icon_->isShown() || !click_->makeReady()) return;
  lent_ = true;
  const double scale = bar_.devicePixelRatioF();
  const int side = icon_->side();
  const int right = static_cast<int>(std::lround(bar_.width() * scale)) - side;
  const int x = static_cast<int>(std::lround(std::clamp(anchor.x() * scale, 0.0, right * 1.0)));
  icon_->setPointerThrough(true);
  icon_->move({x, static_cast<int>(std::lround(anchor.y() * scale)) - side});
  click_->start(1);
}

void XembedItem::cancelPress() {
  if (click_) click_->cancel();
}

}  // namespace tarnwick::bar::x11
