#pragma once

#include <QPointer>
#include <QRectF>
#include <functional>
#include <memory>

#include "bar/board/item.h"
#include "bar/sni/icon_slot.h"
#include "bar/sni/item_address.h"
#include "bar/sni/property_reader.h"
#include "bar/sni/sni_properties.h"
#include "common/menus/view/menu_popup.h"

namespace tarnwick::bar {

// What the StatusNotifierItems of one host share.
struct SniShared {
  IconLoader icons;
  QPointer<MenuPopup> menu;  // of all of them one menu is open at most
};

// One StatusNotifierItem of another application. Goes onto the board once it is ready.
class SniItem : public Item {
  Q_OBJECT

 public:
  // `address.service` is the owner's unique name.
  SniItem(ItemAddress address, std::shared_ptr<SniShared> shared);
  ~SniItem() override;

  void start() { reader_.start(); }
  // Its owner may have something new.
  void refresh() { reader_.refresh(); }
  // Whose it is. `applicationIcon` (theme name or path) is shown when the item's own cannot be
  // found.
  void setProcess(qint32 pid, const QString& bundleId, const QString& applicationName,
                  const QString& applicationIcon);

  const ItemAddress& address() const { return address_; }

  ItemRecord record() const override;
  QString key() const override { return key_; }
  bool hasPicture() const override { return !showsIcon_ || (namesIcon_ && !isGap()); }
  double length() const override { return length_; }
  void paint(QPainter& painter, const QRectF& cell, double scale,
             const QColor& foreground) override;
  void placed(const QRectF& cell) override { cell_ = cell; }
  void clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF globalPoints,
               QPointF anchor) override;
  void scrolled(QPoint angleDelta) override;
  QString toolTip() const override;
  void press(QPointF anchor) override;
  void activate(QPointF anchor) override;
  void cancelPress() override;

 signals:
  // Its first properties and its process are known; once.
  void ready();
  // Its object is not there any more.
  void vanished();

 private:
  void take(SniProperties fresh);
  bool updateIcons();
  void updateLength();
  // Neither its icon nor a label is to be seen.
  bool isGap() const { return icon_.isBlank() && properties_.label.isEmpty(); }
  QString name() const;
  QString labelShown() const;
  double labelWidth() const;

  bool leftOpensMenu() const;
  bool isAyatana() const;
  void openMenu(QPointF anchor, std::function<void()> otherwise);
  void contextMenu(QPointF anchor);
  void secondaryActivate(QPointF anchor);
  void callItem(const QString& method, const QVariantList& arguments,
                std::function<void()> unknown = {});
  void scroll(int delta, const QString& orientation);

  const ItemAddress address_;
  const std::shared_ptr<SniShared> shared_;
  PropertyReader reader_;
  SniProperties properties_;  // without pixmaps
  // Kept until the process is known: icons may be files of its own.
  std::unique_ptr<SniProperties> unread_;
  IconSlot icon_;
  IconSlot overlay_;
  qint32 pid_ = -1;  // not known yet
  QString applicationName_;
  QString applicationIcon_;
  QString bundleId_;
  QString key_;
  QRectF cell_;
  double length_ = 0;
  QPoint wheel_;  // not passed on yet
  int pendingCalls_ = 0;
  bool noActivate_ = false;  // the owner knows no Activate
  bool namesIcon_ = false;   // it or its application does; the icon may still not be found
  bool showsIcon_ = true;
  bool isReady_ = false;
};

}  // namespace tarnwick::bar
