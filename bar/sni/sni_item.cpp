#include "bar/sni/sni_item.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTextDocument>
#include <algorithm>
#include <cmath>
#include <utility>

#include "bar/board/metrics.h"
#include "bar/board/placeholder.h"

namespace tarnwick::bar {

namespace {

constexpr double maximumLabel = 300;        // points
constexpr double labelGap = 4;              // points between icon and label
constexpr double overlayShare = 10.0 / 16;  // of the icon's side

double iconSide() {
  return Metrics::shared().iconSide();
}

}  // namespace

SniItem::SniItem(ItemAddress address, std::shared_ptr<SniShared> shared)
    : address_(std::move(address)), shared_(std::move(shared)), reader_(address_) {
  connect(&reader_, &PropertyReader::propertiesRead, this,
          [this](const QVariantMap& values) { take(decodeSniProperties(values)); });
  connect(&reader_, &PropertyReader::vanished, this, &SniItem::vanished);
  connect(&Metrics::shared(), &Metrics::changed, this, [this] {
    icon_.forget();
    overlay_.forget();
    reader_.refresh();  // pixmaps are not kept
  });
}

SniItem::~SniItem() = default;

void SniItem::setProcess(qint32 pid, const QString& bundleId, const QString& applicationName,
                         const QString& applicationIcon) {
  pid_ = pid;
  bundleId_ = bundleId;
  applicationName_ = applicationName;
  applicationIcon_ = applicationIcon;
  if (unread_) take(std::move(*std::exchange(unread_, nullptr)));
}

void SniItem::take(SniProperties fresh) {
  if (pid_ < 0) {
    unread_ = std::make_unique<SniProperties>(std::move(fresh));
    return;
  }
  SniProperties old = std::exchange(properties_, std::move(fresh));
  const bool iconsChanged = updateIcons();
  const bool looksDifferent = iconsChanged || old.label != properties_.label;
  const bool told = old.id != properties_.id || old.title != properties_.title ||
                    old.toolTipTitle != properties_.toolTipTitle ||
                    old.menuPath != properties_.menuPath;
  if (properties_.status == SniStatus::passive && old.status != SniStatus::passive) {
    reader_.checkLater();
  }
  if (old.menuPath != properties_.menuPath) noActivate_ = false;
  updateLength();
  if (!isReady_) {
    isReady_ = true;
    key_ = bundleId_ + u'/' + properties_.id;
    emit ready();
    return;
  }
  if (looksDifferent) emit contentChanged();
  if (told) emit recordChanged();
}

// True when the item looks different now. Sent pixmaps are let go.
bool SniItem::updateIcons() {
  SniProperties& p = properties_;
  // An item that sends a label and no icon is text only.
  showsIcon_ = !p.icon.isEmpty() || p.label.isEmpty();
  std::vector<IconLoader::Request> candidates;
  const auto add = [&candidates](const SniIcon& icon, const QString& themePath, qint32 pid) {
    if (!icon.isEmpty()) candidates.push_back({icon, themePath, pid});
  };
  if (p.status == SniStatus::needsAttention) add(p.attention, p.iconThemePath, pid_);
  add(p.icon, p.iconThemePath, pid_);
  if (showsIcon_) add({applicationIcon_, {}}, {}, 0);
  namesIcon_ = !candidates.empty();
  const bool iconChanged = icon_.update(shared_->icons, candidates);
  candidates.clear();
  add(p.overlay, p.iconThemePath, pid_);
  const bool overlayChanged = overlay_.update(shared_->icons, candidates);
  for (SniIcon* const icon : {&p.icon, &p.attention, &p.overlay}) icon->pixmaps = {};
  return iconChanged || overlayChanged;
}

void SniItem::updateLength() {
  double length = 0;
  if (properties_.status != SniStatus::passive) {
    const double label = labelWidth();
    if (showsIcon_) length += icon_.width(iconSide());
    if (label > 0) length += label + (length > 0 ? labelGap : 0);
    length += 2 * Metrics::padding;
  }
  if (length == length_) return;
  length_ = length;
  emit lengthChanged();
}

QString SniItem::name() const {
  for (const QString& name : {properties_.title, properties_.toolTipTitle, applicationName_}) {
    if (!name.isEmpty()) return name;
  }
  return properties_.id;
}

QString SniItem::labelShown() const {
  return QFontMetricsF(QGuiApplication::font())
      .elidedText(properties_.label, Qt::ElideRight, maximumLabel);
}

double SniItem::labelWidth() const {
  if (properties_.label.isEmpty()) return 0;
  const QFontMetricsF metrics(QGuiApplication::font());
  const double width = std::max(metrics.horizontalAdvance(properties_.label),
                                metrics.horizontalAdvance(properties_.labelGuide));
  return std::ceil(std::min(width, maximumLabel));
}

ItemRecord SniItem::record() const {
  ItemRecord record;
  record.pid = std::max(pid_, 0);
  record.kind = ItemKind::sni;
  record.hint = properties_.id;
  record.title = name();
  record.busName = address_.service;
  record.objectPath = address_.path;
  record.menuPath = properties_.menuPath;
  return record;
}

void SniItem::paint(QPainter& painter, const QRectF& cell, double scale, const QColor& foreground) {
  double x = cell.left() + Metrics::padding;
  if (showsIcon_) {
    const double width = icon_.width(iconSide());
    const QRectF rect(x, cell.center().y() - iconSide() / 2, width, iconSide());
    if (!icon_.isNull() && !isGap()) {
      icon_.paint(painter, rect, scale, foreground, shared_->icons);
    } else if (hasPicture() || !isFresh()) {
      paintPlaceholder(painter, rect, name(), foreground);
    }
    if (!overlay_.isNull()) {
      const double side = iconSide() * overlayShare;
      overlay_.paint(painter, {rect.right() - side, rect.bottom() - side, side, side}, scale,
                     foreground, shared_->icons);
    }
    x += width + labelGap;
  }
  if (properties_.label.isEmpty()) return;
  painter.setPen(foreground);
  painter.setFont(QGuiApplication::font());
  painter.drawText(QRectF(x, cell.top(), labelWidth(), cell.height()),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, labelShown());
}

QString SniItem::toolTip() const {
  QString text = properties_.toolTipTitle.isEmpty() ? name() : properties_.toolTipTitle;
  if (!properties_.toolTipText.isEmpty() && properties_.toolTipText != text) {
    text += u'\n' + properties_.toolTipText;
  }
  if (!Qt::mightBeRichText(text)) return text;
  return text.toHtmlEscaped().replace(u'\n', QLatin1String("<br>"));
}

}  // namespace tarnwick::bar
