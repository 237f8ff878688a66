// What clicks, the wheel and presses by other programs do to a StatusNotifierItem.

#include <QDBusVariant>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "bar/sni/sni_item.h"
#include "common/bus/bus_call.h"

namespace tarnwick::bar {

namespace {

using namespace std::chrono_literals;

constexpr auto clickTimeout = 5s;
constexpr int maximumPendingCalls = 3;  // a stopped owner would do all of them later
constexpr int notch = 120;

// The point in device pixels of the X screen, on the primary monitor.
QVariantList devicePoint(QPointF anchor) {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {0, 0};
  const double scale = screen->devicePixelRatio();
  const QRect monitor = screen->geometry();  // its corner is in device pixels already
  const auto clamped = [scale](double value, double limit) {
    return static_cast<int>(std::lround(std::clamp(value, 0.0, std::max(0.0, limit - 1)) * scale));
  };
  return {monitor.x() + clamped(anchor.x(), monitor.width()),
          monitor.y() + clamped(anchor.y(), monitor.height())};
}

}  // namespace

void SniItem::clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF globalPoints,
                      QPointF anchor) {
  Q_UNUSED(modifiers)
  Q_UNUSED(globalPoints)
  if (button == Qt::MiddleButton) {
    secondaryActivate(anchor);
  } else if (button == Qt::RightButton) {
    openMenu(anchor, [this, anchor] { contextMenu(anchor); });
  } else if (leftOpensMenu()) {
    openMenu(anchor, [this, anchor] { noActivate_ ? contextMenu(anchor) : activate(anchor); });
  } else {
    activate(anchor);
  }
}

void SniItem::scrolled(QPoint angleDelta) {
  wheel_ += angleDelta;
  const auto whole = [](int delta) { return delta / notch * notch; };
  const QPoint steps(whole(wheel_.x()), whole(wheel_.y()));
  wheel_ -= steps;
  scroll(steps.y(), QStringLiteral("vertical"));
  scroll(steps.x(), QStringLiteral("horizontal"));
}

// Ayatana items count steps, down positive; the others take Qt's angle, up positive.
void SniItem::scroll(int delta, const QString& orientation) {
  if (delta == 0) return;
  callItem(QStringLiteral("Scroll"), {isAyatana() ? -delta / notch : delta, orientation});
}

void SniItem::press(QPointF anchor) {
  if (properties_.menuPath.isEmpty()) {
    activate(anchor);
    return;
  }
  const QString menu = QStringLiteral("com.canonical.dbusmenu");
  QDBusMessage aboutToShow = QDBusMessage::createMethodCall(address_.service, properties_.menuPath,
                                                            menu, QStringLiteral("AboutToShow"));
  aboutToShow.setArguments({0});
  sendBus(aboutToShow);
  QDBusMessage opened = QDBusMessage::createMethodCall(address_.service, properties_.menuPath, menu,
                                                       QStringLiteral("Event"));
  opened.setArguments({0, QStringLiteral("opened"), QVariant::fromValue(QDBusVariant(0)), 0U});
  sendBus(opened);
}

void SniItem::cancelPress() {
  if (properties_.menuPath.isEmpty()) return;
  QDBusMessage closed = QDBusMessage::createMethodCall(address_.service, properties_.menuPath,
                                                       QStringLiteral("com.canonical.dbusmenu"),
                                                       QStringLiteral("Event"));
  closed.setArguments({0, QStringLiteral("closed"), QVariant::fromValue(QDBusVariant(0)), 0U});
  sendBus(closed);
}

bool SniItem::leftOpensMenu() const {
  if (properties_.menuPath.isEmpty()) return false;
  return noActivate_ || properties_.itemIsMenu.value_or(true);
}

bool SniItem::isAyatana() const {
  return properties_.ayatana || address_.path.startsWith(QLatin1String("/org/ayatana/"));
}

// `otherwise` is what to do when the menu turns out not to be there.
void SniItem::openMenu(QPointF anchor, std::function<void()> otherwise) {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (properties_.menuPath.isEmpty() || screen == nullptr) {
    otherwise();
    return;
  }
  if (shared_->menu) {
    // Asked already; asking a busy owner again does not make it faster.
    if (shared_->menu->parent() == this && !shared_->menu->isShown()) return;
    shared_->menu->dismiss();
  }
  auto* const popup = new MenuPopup(address_.service, properties_.menuPath, this);
  shared_->menu = popup;
  connect(popup, &MenuPopup::failed, this, std::move(otherwise));
  const QSizeF cell = cell_.size();
  const QPointF corner = screen->geometry().topLeft() + anchor - QPointF(0, cell.height());
  popup->open(QRectF(corner, cell).toRect());
}

void SniItem::activate(QPointF anchor) {
  callItem(QStringLiteral("Activate"), devicePoint(anchor), [this, anchor] {
    noActivate_ = true;
    if (!properties_.menuPath.isEmpty()) openMenu(anchor, [] {});
  });
}

void SniItem::contextMenu(QPointF anchor) {
  callItem(QStringLiteral("ContextMenu"), devicePoint(anchor));
}

void SniItem::secondaryActivate(QPointF anchor) {
  const auto plain = [this, anchor] {
    callItem(QStringLiteral("SecondaryActivate"), devicePoint(anchor));
  };
  if (isAyatana()) {
    callItem(QStringLiteral("XAyatanaSecondaryActivate"), {0U}, plain);
  } else {
    plain();
  }
}

// `unknown` is called when the owner has no such method. That can also mean that its object has
// gone: the item looks for itself.
void SniItem::callItem(const QString& method, const QVariantList& arguments,
                       std::function<void()> unknown) {
  if (pendingCalls_ >= maximumPendingCalls) return;
  ++pendingCalls_;
  QDBusMessage call = QDBusMessage::createMethodCall(
      address_.service, address_.path, QStringLiteral("org.kde.StatusNotifierItem"), method);
  call.setArguments(arguments);
  callBus(call, clickTimeout, this, [this, unknown = std::move(unknown)](const auto& reply) {
    --pendingCalls_;
    if (!saysAbsent(reply)) return;
    reader_.refresh();
    if (unknown) unknown();
  });
}

}  // namespace tarnwick::bar
