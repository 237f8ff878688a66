#include "bar/window/bar_window.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "bar/board/metrics.h"

namespace tarnwick::bar {

namespace {

constexpr double edge = 12;          // points free at both ends of the bar
constexpr double clockGap = 8;       // between the row and the clock
constexpr double nameGap = 12;       // between the application's name and the row
constexpr double shortestName = 32;  // below that the name is not worth showing
constexpr double longestName = 320;
constexpr double fontRoom = 6;       // above and below the text together
constexpr int screenSettleMs = 200;  // the toolkit hears of a monitor's change in pieces

// Digits differ in width in some fonts; the row must not shift from minute to minute.
QString widest(QString clock) {
  for (QChar& character : clock) {
    if (character.isDigit()) character = QLatin1Char('0');
  }
  return clock;
}

QColor withAlpha(QColor colour, double alpha) {
  colour.setAlphaF(static_cast<float>(alpha));
  return colour;
}

}  // namespace

BarWindow::BarWindow(Board& board, const Clock& clock, Appearance& appearance,
                     const BarSettings& settings)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      board_(board),
      clock_(clock),
      appearance_(appearance),
      settings_(settings) {
  setWindowTitle(tr("Menu Bar"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoSystemBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_AlwaysShowToolTips);
  setMouseTracking(true);
  applyAppearance();

  screenTimer_.setSingleShot(true);
  screenTimer_.setInterval(screenSettleMs);
  connect(&screenTimer_, &QTimer::timeout, this, &BarWindow::place);
  connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &BarWindow::followScreen);
  connect(&clock_, &Clock::changed, this, &BarWindow::layOutClock);
  connect(&appearance_, &Appearance::changed, this, &BarWindow::applyAppearance);
  connect(&settings_, &BarSettings::changed, this, QOverload<>::of(&QWidget::update));
  connect(&board_, &Board::layoutChanged, this, &BarWindow::layoutChanged);
  connect(&board_, &Board::repaintNeeded, this, &BarWindow::updateItem);
  connect(&board_, &Board::itemRemoved, this, [this](ItemId id) {
    if (hovered_ == id) hovered_.reset();
    if (pressed_ == id) pressed_.reset();
    followDrag();
  });
  qGuiApp->installEventFilter(this);
  followScreen();
  place();
}

void BarWindow::setApplicationName(const QString& name) {
  if (name == applicationName_) return;
  applicationName_ = name;
  update(nameRect().toAlignedRect());
}

void BarWindow::followScreen() {
  disconnect(screenWatch_);
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (screen) {
    screenWatch_ =
        connect(screen, &QScreen::geometryChanged, this, [this] { screenTimer_.start(); });
  }
  screenTimer_.start();
}

void BarWindow::place() {
  screenTimer_.stop();
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (!screen) return;
  const double height = std::max(Metrics::minBarHeight, QFontMetricsF(font()).height() + fontRoom);
  frame_ = QRect(0, 0, screen->geometry().width(), static_cast<int>(std::ceil(height)));
  clockRect_ = {};
  layOutClock();
  update();
  emit frameChanged(frame_);
}

void BarWindow::layOutClock() {
  const double width = std::ceil(QFontMetricsF(font()).horizontalAdvance(widest(clock_.text())));
  const QRectF rect(frame_.width() - edge - width, 0, width, frame_.height());
  if (rect != clockRect_) {
    update(clockRect_.toAlignedRect());
    clockRect_ = rect;
    board_.setBounds(rect.left() - clockGap, frame_.height());
  }
  update(clockRect_.toAlignedRect());
}

void BarWindow::layoutChanged() {
  std::map<ItemId, QRectF> cells;
  for (const auto& [id, frame] : board_.row().frames()) {
    const QRectF cell = cellOf(id);
    if (cell.right() > 0) cells[id] = cell;
  }
  const auto updateUnlessIn = [this](const auto& one, const auto& other) {
    for (const auto& [id, cell] : one) {
      const auto found = other.find(id);
      if (found == other.end() || found->second != cell) update(cell.toAlignedRect());
    }
  };
  updateUnlessIn(cells, painted_);
  updateUnlessIn(painted_, cells);
  painted_ = std::move(cells);
  if (nameRect() != paintedNameRect_) update(nameRect().united(paintedNameRect_).toAlignedRect());
  followDrag();  // a change of the row may have ended it
}

void BarWindow::applyAppearance() {
  QPalette colours = palette();
  colours.setColor(QPalette::Window, appearance_.ground());
  colours.setColor(QPalette::WindowText, appearance_.foreground());
  setPalette(colours);
  QPalette tip = QToolTip::palette();
  tip.setColor(QPalette::ToolTipBase, appearance_.ground());
  tip.setColor(QPalette::ToolTipText, appearance_.foreground());
  QToolTip::setPalette(tip);
  update();
}

void BarWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) place();
  QWidget::changeEvent(event);
}

QRectF BarWindow::cellOf(ItemId id) const {
  const auto frame = board_.row().frame(id);
  if (!frame) return {};
  QRectF cell(frame->x, frame->y, frame->width, frame->height);
  if (board_.pointer().draggedItem() == id) cell.translate(board_.pointer().dragOffset(), 0);
  return cell;
}

QRectF BarWindow::nameRect() const {
  double right = std::min(edge + longestName, clockRect_.left());
  for (const auto& [id, frame] : board_.row().frames()) {
    const Item* const item = board_.item(id);
    if (frame.maxX() <= edge || frame.width <= 0 || !item || item->isBlank()) continue;
    right = std::min(right, frame.x - nameGap);
    break;
  }
  if (right - edge < shortestName) return {};
  return {edge, 0, right - edge, static_cast<double>(frame_.height())};
}

void BarWindow::updateItem(ItemId id) {
  update(cellOf(id).toAlignedRect());
  // An item that was blank now hides the name, or the other way round.
  if (nameRect() != paintedNameRect_) update(nameRect().united(paintedNameRect_).toAlignedRect());
}

void BarWindow::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRectF dirty = event->rect();
  const double scale = devicePixelRatioF();
  painter.fillRect(dirty, appearance_.ground());
  const double line = 1 / scale;
  painter.fillRect(QRectF(dirty.left(), height() - line, dirty.width(), line),
                   appearance_.hairline());

  paintedNameRect_ = nameRect();
  if (dirty.intersects(paintedNameRect_)) paintName(painter);
  const auto dragged = board_.pointer().draggedItem();
  for (const auto& [id, frame] : board_.row().frames()) {
    const QRectF cell(frame.x, frame.y, frame.width, frame.height);
    if (id != dragged && cell.intersects(dirty)) paintItem(painter, id, cell, scale);
  }
  if (dirty.intersects(clockRect_)) paintClock(painter);
  if (dragged && cellOf(*dragged).intersects(dirty)) {
    paintItem(painter, *dragged, cellOf(*dragged), scale);
  }
}

void BarWindow::paintName(QPainter& painter) {
  if (applicationName_.isEmpty() || !settings_.options().showApplicationName) return;
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  const QString text =
      QFontMetricsF(bold).elidedText(applicationName_, Qt::ElideRight, paintedNameRect_.width());
  painter.setFont(bold);
  painter.setPen(appearance_.foreground());
  painter.drawText(paintedNameRect_, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

void BarWindow::paintItem(QPainter& painter, ItemId id, const QRectF& cell, double scale) {
  Item* const item = board_.item(id);
  if (!item || cell.isEmpty()) return;
  painter.save();
  const bool dragged = board_.pointer().draggedItem() == id;
  if (!item->isBlank() && (dragged || pressed_ == id || hovered_ == id)) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF plate = cell.adjusted(0.5, 2, -0.5, -2);
    if (dragged) {
      painter.setBrush(appearance_.ground());
      painter.drawRoundedRect(plate, 5, 5);
    }
    painter.setBrush(withAlpha(appearance_.foreground(), dragged || pressed_ == id ? 0.18 : 0.09));
    painter.drawRoundedRect(plate, 5, 5);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  painter.setClipRect(cell, Qt::IntersectClip);
  item->paint(painter, cell, scale, appearance_.foreground());
  painter.restore();
}

void BarWindow::paintClock(QPainter& painter) {
  painter.setFont(font());
  painter.setPen(appearance_.foreground());
  painter.drawText(clockRect_, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine,
                   clock_.text());
}

}  // namespace tarnwick::bar
