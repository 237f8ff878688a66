#include "common/look/appearance.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace tarnwick {

namespace {

constexpr int portalTimeoutMs = 5'000;

QString portalService() {
  return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString portalPath() {
  return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString settingsInterface() {
  return QStringLiteral("org.freedesktop.portal.Settings");
}
QString appearanceSpace() {
  return QStringLiteral("org.freedesktop.appearance");
}
QString schemeKey() {
  return QStringLiteral("color-scheme");
}

bool isDarkPalette(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

// For a dark desktop whose toolkit settings know nothing of it.
QPalette darkPalette() {
  QPalette palette(QColor(0x3a, 0x3a, 0x3e), QColor(0x2a, 0x2a, 0x2d));
  palette.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x22));
  palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
  palette.setColor(QPalette::ToolTipBase, QColor(0x36, 0x36, 0x3a));
  palette.setColor(QPalette::ToolTipText, QColor(0xf2, 0xf2, 0xf2));
  palette.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa6));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xde));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(0x6e, 0xa8, 0xff));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(role, QColor(0xf2, 0xf2, 0xf2));
    palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x85));
  }
  return palette;
}

QPalette lightPalette() {
  QPalette palette(QColor(0xef, 0xef, 0xf1), QColor(0xf4, 0xf4, 0xf6));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xde));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

}  // namespace

Appearance::Appearance(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)), desktopPalette_(QApplication::palette()) {
  dark_ = isDarkPalette(desktopPalette_);
}

QColor Appearance::ground() const {
  return dark_ ? QColor(0x1e, 0x1e, 0x21) : QColor(0xf3, 0xf3, 0xf5);
}

QColor Appearance::foreground() const {
  return dark_ ? QColor(0xf2, 0xf2, 0xf4) : QColor(0x1c, 0x1c, 0x1f);
}

QColor Appearance::hairline() const {
  return dark_ ? QColor(0x00, 0x00, 0x00) : QColor(0xcf, 0xcf, 0xd3);
}

void Appearance::start() {
  qApp->installEventFilter(this);
  qRegisterMetaType<QDBusVariant>();  // the slot's parameter is looked up by its name
  bus_.connect(portalService(), portalPath(), settingsInterface(), QStringLiteral("SettingChanged"),
               this, SLOT(settingChanged(QString, QString, QDBusVariant)));
  const QString bus = QStringLiteral("org.freedesktop.DBus");
  bus_.connect(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
               QStringLiteral("NameOwnerChanged"), {portalService()}, QString(), this,
               SLOT(portalOwnerChanged(QString, QString, QString)));
  askPortal(QStringLiteral("ReadOne"));
}

void Appearance::askPortal(const QString& method) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(portalService(), portalPath(), settingsInterface(), method);
  call << appearanceSpace() << schemeKey();
  call.setAutoStartService(false);
  auto* const pending = new QDBusPendingCallWatcher(bus_.asyncCall(call, portalTimeoutMs), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this,
          [this, method](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *finished;
            if (!reply.isError()) {
              settingChanged(appearanceSpace(), schemeKey(), reply.value());
            } else if (reply.error().type() == QDBusError::UnknownMethod &&
                       method == QLatin1String("ReadOne")) {
              askPortal(QStringLiteral("Read"));  // portals before version 2
            }
          });
}

void Appearance::settingChanged(const QString& space, const QString& key,
                                const QDBusVariant& value) {
  if (space != appearanceSpace() || key != schemeKey()) return;
  QVariant number = value.variant();
  // The old call wraps its answer twice.
  if (number.canConvert<QDBusVariant>()) number = number.value<QDBusVariant>().variant();
  if (number.typeId() != QMetaType::UInt) return;
  const uint scheme = number.toUInt();
  take(scheme == 1 ? Scheme::dark : scheme == 2 ? Scheme::light : Scheme::none);
}

void Appearance::portalOwnerChanged(const QString&, const QString&, const QString& after) {
  if (!after.isEmpty()) askPortal(QStringLiteral("ReadOne"));
}

void Appearance::take(Scheme scheme) {
  if (scheme == scheme_) return;
  scheme_ = scheme;
  update();
}

void Appearance::update() {
  const bool desktopDark = isDarkPalette(desktopPalette_);
  const bool dark = scheme_ == Scheme::none ? desktopDark : scheme_ == Scheme::dark;
  if (dark != desktopDark) {
    replaced_ = true;
    QApplication::setPalette(dark ? darkPalette() : lightPalette());
  } else if (std::exchange(replaced_, false)) {
    QApplication::setPalette(desktopPalette_);
  }
  if (dark == dark_) return;
  dark_ = dark;
  emit changed();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) paletteChanged();
  return QObject::eventFilter(watched, event);
}

void Appearance::paletteChanged() {
  if (replaced_ || QApplication::palette() == desktopPalette_) return;
  desktopPalette_ = QApplication::palette();
  update();
}

}  // namespace tarnwick
