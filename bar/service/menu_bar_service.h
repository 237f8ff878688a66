#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QRectF>
#include <functional>

#include "bar/access/access_control.h"
#include "bar/access/callers.h"
#include "bar/board/board.h"
#include "bar/native/native_items.h"
#include "bar/service/free_hand.h"
#include "common/look/appearance.h"

namespace tarnwick::bar {

// The bar on the session bus: object /org/tarnwick/MenuBar1 with the interface
// org.tarnwick.MenuBar1, under a name of the same letters. A second bar waits in the name's queue
// and takes over.
class MenuBarService : public QDBusVirtualObject {
  Q_OBJECT

 public:
  // `isButtonDown` tells whether the user holds a pointer button.
  MenuBarService(Board& board, Callers& callers, AccessControl& access,
                 const Appearance& appearance, std::function<bool()> isButtonDown,
                 QDBusConnection bus, QObject* parent = nullptr);

  // Exports the object, then asks for the name. False when the object cannot be exported.
  bool start();

  // The bar's place in points.
  void setFrame(const QRectF& frame);

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 signals:
  // "privacy" or "menu-bar", and the connection that wants to see it.
  void paneRequested(const QString& pane, const QString& caller);

 private:
  struct Method;
  static const Method methods[];

  void call(const Method& method, const QDBusMessage& message, qint32 pid);
  void items(const QDBusMessage& message, qint32 pid);
  void press(const QDBusMessage& message, qint32 pid);
  void pressAt(const QDBusMessage& message, qint32 pid);
  void pressWhenFree(ItemId id, void (Item::*action)(QPointF), QPointF anchor);
  void cancel(const QDBusMessage& message, qint32 pid);
  void render(const QDBusMessage& message, qint32 pid);
  void addItem(const QDBusMessage& message, qint32 pid);
  void setLength(const QDBusMessage& message, qint32 pid);
  void placeLeftOf(const QDBusMessage& message, qint32 pid);
  void removeItem(const QDBusMessage& message, qint32 pid);
  void ownFrame(const QDBusMessage& message, qint32 pid);
  void setImage(const QDBusMessage& message, qint32 pid);
  void postPointerEvent(const QDBusMessage& message, qint32 pid);
  void hasAccess(const QDBusMessage& message, qint32 pid);
  void requestAccess(const QDBusMessage& message, qint32 pid);
  void showPane(const QDBusMessage& message, qint32 pid);

  void handleProperties(const QDBusMessage& message);
  QVariant property(const QString& name) const;
  void callerGone(const QString& name);

  void reply(const QDBusMessage& message, const QVariantList& values = {});
  void fail(const QDBusMessage& message, const QString& error, const QString& text);
  void invalid(const QDBusMessage& message, const QString& text);
  void noSuchItem(const QDBusMessage& message);
  void finish(const QDBusMessage& message, NativeItems::Error error);
  void emitSignal(const QString& name, const QVariantList& values = {});
  void emitTo(const QString& connection, const QString& name, const QVariantList& values);

  Board& board_;
  Callers& callers_;
  AccessControl& access_;
  const Appearance& appearance_;
  QDBusConnection bus_;
  NativeItems native_;
  QRectF frame_;
  FreeHand hand_;
  ItemId waiting_ = 0;  // whose press waits for it
  QString poster_;      // who posted the press that is still held; empty for nobody
};

}  // namespace tarnwick::bar
