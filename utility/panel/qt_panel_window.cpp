#include "utility/panel/qt_panel_window.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <cmath>

#include "utility/panel/panel_content.h"
#include "utility/style/slim_scroll_bar.h"

namespace tarnwick {

namespace {

using Metrics = PanelMetrics;

constexpr double groundAlpha = 0.97;  // under a compositor
constexpr int shadowRings = 6;        // one for each point of the margin
constexpr double shadowAlpha = 0.05;  // of one ring

QSize toQSize(Size size) {
  return {static_cast<int>(std::ceil(size.width)), static_cast<int>(std::ceil(size.height))};
}

// The window itself: it draws the ground and scrolls the content when that is larger.
class PanelWidget : public QWidget {
 public:
  explicit PanelWidget(QtPanelWindows::Effects effects)
      : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                             Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint),
        effects_(std::move(effects)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(PanelContent::tr("Hidden apps"));
    scroll_.setFrameShape(QFrame::NoFrame);
    scroll_.viewport()->setAutoFillBackground(false);
    scroll_.setFocusPolicy(Qt::NoFocus);
    scroll_.setVerticalScrollBar(new SlimScrollBar);
    scroll_.setHorizontalScrollBar(new SlimScrollBar(Qt::Horizontal));
    connect(scroll_.horizontalScrollBar(), &QScrollBar::valueChanged, this,
            [this] { keepTitlesInSight(); });
    scroll_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  }

  void setContent(const PanelView& view) {
    // A refresh keeps the place; a panel that is opened begins at its top.
    const int scrolled = isVisible() ? scroll_.verticalScrollBar()->value() : 0;
    // The one before may be the one that is being pressed.
    if (QWidget* before = scroll_.takeWidget()) {
      before->hide();
      before->deleteLater();
    }
    auto* content = new PanelContent(view, nullptr);
    scroll_.setWidget(content);
    content->setAutoFillBackground(false);  // the area had turned it on
    layOut();
    scroll_.verticalScrollBar()->setValue(scrolled);
  }

  QSize fittingSize() const {
    return scroll_.widget() ? scroll_.widget()->sizeHint().grownBy(margins()) : QSize();
  }

  void present() {
    composited_ = effects_.isComposited();
    updateShape();
    show();
    raise();
  }

 protected:
  void resizeEvent(QResizeEvent*) override {
    layOut();
    updateShape();
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = palette().color(QPalette::Window);
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.16);
    if (composited_) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(QColor::fromRgbF(0, 0, 0, shadowAlpha));
      for (int ring = 1; ring <= shadowRings; ++ring) {
        painter.drawRoundedRect(groundRect().adjusted(-ring, -ring + 1, ring, ring),
                                Metrics::cornerRadius + ring, Metrics::cornerRadius + ring);
      }
      ground.setAlphaF(groundAlpha);
      painter.setCompositionMode(QPainter::CompositionMode_Source);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    // Where the window is cut, half transparent corners would show as dark ones.
    const double radius = composited_ ? Metrics::cornerRadius : 0;
    painter.drawRoundedRect(groundRect(), radius, radius);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(QPen(line, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(groundRect().adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cornerRadius,
                            Metrics::cornerRadius);
  }

 private:
  static QMargins margins() {
    constexpr int margin = static_cast<int>(Metrics::margin);
    return {margin, margin, margin, margin};
  }

  void layOut() {
    // What is scrolled ends at the ground's edge; the bars lie in the padding beside the content.
    const QSize size = fittingSize();
    const bool higher = size.height() > height();
    const bool wider = size.width() > width();
    const auto policy = [](bool on) { return on ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff; };
    scroll_.setVerticalScrollBarPolicy(policy(higher));
    scroll_.setHorizontalScrollBarPolicy(policy(wider));
    scroll_.setGeometry(rect().marginsRemoved(margins()));
    keepTitlesInSight();
  }

  void keepTitlesInSight() {
    auto* const content = qobject_cast<PanelContent*>(scroll_.widget());
    if (!content) return;
    // The area's own viewport has its size only once it is shown.
    const bool hasBar = scroll_.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn;
    content->setVisibleWidth(scroll_.horizontalScrollBar()->value(),
                             scroll_.width() - (hasBar ? SlimScrollBar::thickness : 0));
  }

  QRectF groundRect() const { return rect().marginsRemoved(margins()); }

  void updateShape() {
    const double scale = devicePixelRatioF();
    const QRectF ground = groundRect();
    const QRect pixels = QRectF(ground.topLeft() * scale, ground.size() * scale).toRect();
    effects_.cut(winId(), composited_ ? std::nullopt : std::optional(pixels),
                 qRound(Metrics::cornerRadius * scale));
  }

  QtPanelWindows::Effects effects_;
  bool composited_ = false;
  QScrollArea scroll_{this};
};

class QtPanelWindow : public PanelWindow {
 public:
  explicit QtPanelWindow(QtPanelWindows::Effects effects) : widget_(std::move(effects)) {}

  void setRootView(const PanelView& view) override { widget_.setContent(view); }
  Size fittingSize() const override {
    const QSize size = widget_.fittingSize();
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
  }
  void setContentSize(Size size) override { widget_.resize(toQSize(size)); }
  Size contentSize() const override {
    return {static_cast<double>(widget_.width()), static_cast<double>(widget_.height())};
  }
  void setTopLeft(Point point) override {
    const QScreen* primary = QGuiApplication::primaryScreen();
    const QPoint origin = primary ? primary->geometry().topLeft() : QPoint();
    widget_.move(origin + QPoint(qRound(point.x), qRound(point.y)));
  }
  void orderFrontRegardless() override { widget_.present(); }
  void orderOut() override { widget_.hide(); }
  bool isVisible() const override { return widget_.isVisible(); }

 private:
  PanelWidget widget_;
};

}  // namespace

std::unique_ptr<PanelWindow> QtPanelWindows::makePanelWindow() {
  return std::make_unique<QtPanelWindow>(effects_);
}

}  // namespace tarnwick
