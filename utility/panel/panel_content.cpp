#include "utility/panel/panel_content.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "common/look/tool_tip.h"
#include "utility/pictures/theme_icon.h"

namespace tarnwick {

namespace {

using Metrics = PanelMetrics;

// Text styles relative to the desktop's own font, so that large fonts stay large.
constexpr double calloutScale = 0.95;
constexpr double captionScale = 0.85;
constexpr double secondaryAlpha = 0.62;
// Points. As wide as three entries: a longer title does not widen a panel, it is elided.
constexpr int widestTitle = static_cast<int>(3 * Metrics::cell.width + 2 * Metrics::cellSpacing);
constexpr int inset = static_cast<int>(Metrics::padding);

QFont scaled(const QFont& font, double scale) {
  QFont result(font);
  if (font.pointSizeF() > 0) {
    result.setPointSizeF(font.pointSizeF() * scale);
  } else {
    result.setPixelSize(qRound(font.pixelSize() * scale));
  }
  return result;
}

QPalette secondary(const QPalette& palette) {
  QPalette result(palette);
  QColor color = palette.color(QPalette::WindowText);
  color.setAlphaF(secondaryAlpha);
  result.setColor(QPalette::WindowText, color);
  return result;
}

QLabel* makeLabel(const QString& text, const QFont& font, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setFont(font);
  label->setPalette(secondary(parent->palette()));
  label->setText(text);
  return label;
}

}  // namespace

PanelCell::PanelCell(const PanelSection::Entry& entry, bool statusStyle, QWidget* parent)
    : QAbstractButton(parent),
      entry_(entry),
      iconSide_(statusStyle ? Metrics::iconSideAmongPictures : Metrics::iconSide) {
  const QString name = QString::fromStdString(entry.name);
  setAccessibleName(name);
  setToolTip(plainToolTip(name));
  setFocusPolicy(Qt::NoFocus);
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::clicked, this,
          [this] { tap(false); });  // by assistive technology
}

// A press counts at once; the button's own press, release and click stay out of it.
void PanelCell::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) tap(false);
  if (event->button() == Qt::RightButton) tap(true);
}

void PanelCell::tap(bool rightClick) {
  const QPointF centre = mapToGlobal(QRectF(rect()).center());
  const QScreen* primary = QGuiApplication::primaryScreen();
  emit tapped(rightClick, centre.x() - (primary ? primary->geometry().x() : 0));
}

void PanelCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  if (underMouse()) {
    QColor hover = palette().color(QPalette::WindowText);
    hover.setAlphaF(0.1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(hover);
    painter.drawRoundedRect(rect(), 6, 6);
  }
  const auto* captured = std::get_if<Picture>(&entry_.icon);
  const auto* themed = std::get_if<ThemeIcon>(&entry_.icon);
  if (captured && captured->bitmap) {
    const Size size = Metrics::pictureSize(captured->size);
    QRectF target(0, 0, size.width, size.height);
    target.moveCenter(QRectF(rect()).center());
    painter.drawPixmap(target, picture(), {});
  } else if (themed) {
    const int side = static_cast<int>(iconSide_);
    QRect target(0, 0, side, side);
    target.moveCenter(rect().center());
    if (!icon_) icon_ = iconOf(*themed);
    painter.drawPixmap(target, applicationPixmap(*icon_, side, devicePixelRatioF()));
  }
}

// At the picture's own pixels; a single-coloured one as a mask filled with the foreground.
QPixmap PanelCell::picture() const {
  const Bitmap& bitmap = *std::get<Picture>(entry_.icon).bitmap;
  const QImage pixels(bitmap.rgba.data(), bitmap.width, bitmap.height, bitmap.width * 4,
                      QImage::Format_RGBA8888_Premultiplied);
  QPixmap result = QPixmap::fromImage(pixels);
  if (entry_.isMonochrome) {
    QPainter tint(&result);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(result.rect(), palette().color(QPalette::WindowText));
  }
  return result;
}

PanelContent::PanelContent(const PanelView& view, QWidget* parent) : QWidget(parent) {
  setAccessibleName(tr("Hidden apps"));
  int top = inset;
  if (view.sections.empty()) top = addEmptyText(top);
  for (const PanelSection& section : view.sections) {
    if (top > inset) top += static_cast<int>(Metrics::sectionSpacing);
    top = addSection(section, view, top);
  }
  size_ = QSize(size_.width() + inset, top + inset);
  resize(size_);
  setVisibleWidth(0, size_.width());
}

void PanelContent::setVisibleWidth(int left, int width) {
  const int room = std::max(0, width - 2 * inset);
  for (const auto& [label, text] : titles_) {
    const QString shown = label->fontMetrics().elidedText(text, Qt::ElideRight, room);
    label->setText(shown);
    label->setToolTip(shown == text ? QString() : plainToolTip(text));
    label->setGeometry(left + inset, label->y(), room, label->height());
  }
}

// The labels' colour is one of their own, made from the palette.
void PanelContent::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    for (QLabel* label : findChildren<QLabel*>()) label->setPalette(secondary(palette()));
  }
  QWidget::changeEvent(event);
}

// Places something of that size at the leading edge and returns where it lies.
QRect PanelContent::reserve(int top, QSize size) {
  const QRect place(QPoint(inset, top), size);
  size_ = size_.expandedTo(QSize(place.right() + 1, place.bottom() + 1));
  return place;
}

int PanelContent::addEmptyText(int top) {
  auto* label = makeLabel(QCoreApplication::translate("PanelView", Metrics::emptyText),
                          scaled(font(), calloutScale), this);
  label->setAlignment(Qt::AlignHCenter);
  label->setGeometry(reserve(top, label->sizeHint()));
  return label->geometry().bottom() + 1;
}

int PanelContent::addTitle(const QString& text, int top) {
  QFont caption = scaled(font(), captionScale);
  caption.setWeight(QFont::DemiBold);
  auto* header = makeLabel(text, caption, this);
  header->setAccessibleName(text);
  header->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);  // with the grid
  const QSize whole = header->sizeHint();
  header->setGeometry(reserve(top, {std::min(whole.width(), widestTitle), whole.height()}));
  titles_.push_back({header, text});
  return header->geometry().bottom() + 1 + static_cast<int>(Metrics::headerSpacing);
}

int PanelContent::addSection(const PanelSection& section, const PanelView& view, int top) {
  if (section.title) top = addTitle(QString::fromStdString(*section.title), top);
  const int columns = Metrics::columnsOf(section, view.columns);
  const QSize cellSize(static_cast<int>(Metrics::cell.width),
                       static_cast<int>(Metrics::cell.height));
  const int spacing = static_cast<int>(Metrics::cellSpacing);
  int index = 0;
  for (const PanelSection::Entry& entry : section.entries) {
    const QPoint cell(index % columns, index / columns);
    ++index;
    auto* button = new PanelCell(entry, view.statusStyle, this);
    const QRect place(QPoint(inset + cell.x() * (cellSize.width() + spacing),
                             top + cell.y() * (cellSize.height() + spacing)),
                      cellSize);
    button->setGeometry(place);
    size_ = size_.expandedTo(QSize(place.right() + 1, place.bottom() + 1));
    connect(button, &PanelCell::tapped, this,
            [onTap = view.onTap, bundleId = entry.bundleId](bool rightClick, double centre) {
              if (onTap) onTap(bundleId, rightClick, centre);
            });
  }
  return size_.height();
}

}  // namespace tarnwick
