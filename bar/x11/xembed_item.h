#pragma once

#include <memory>

#include "bar/board/item.h"
#include "bar/x11/embedded_icon.h"
#include "bar/x11/sent_click.h"

namespace tarnwick::bar::x11 {

// The status item of an XEmbed tray icon. The bar shows what the icon paints into its redirected
// window; real clicks reach the icon by itself where that window lies.
class XembedItem : public Item {
  Q_OBJECT

 public:
  // `bar` (the window the row is drawn in) and `selection` outlive it. `bundleId` names the
  // application.
  XembedItem(const IconFacts& facts, const QString& bundleId, QWidget& bar,
             TraySelection& selection);
  ~XembedItem() override;

  EmbeddedIcon* icon() const { return icon_.get(); }
  // Gives the icon back to the root window now; the item is empty from then on.
  void handBack();

  ItemRecord record() const override;
  QString key() const override;
  double length() const override;
  bool hasPicture() const override { return icon_ && !icon_->picture().isNull(); }
  void paint(QPainter& painter, const QRectF& cell, double scale,
             const QColor& foreground) override;
  void placed(const QRectF& cell) override;
  // Reaches the bar only beside the icon's window, or when the client does not take buttons.
  void clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF globalPoints,
               QPointF anchor) override;
  void scrolled(QPoint angleDelta) override;
  // A left click, sent to the icon while its window stands over `anchor`, because clients put their
  // menu beside their icon. The protocol knows no other way to open it.
  void press(QPointF anchor) override;
  void cancelPress() override;

 private:
  void settle();

  QWidget& bar_;
  QString hint_;
  QString key_;
  qint32 pid_;
  QRectF cell_;
  bool lent_ = false;  // the wrapper is away from its cell, for a press
  QPoint scrollRest_;
  std::unique_ptr<EmbeddedIcon> icon_;
  std::unique_ptr<SentClick> click_;
};

// Pixels of an icon's side in a bar window.
std::uint16_t iconPixels(const QWidget& bar);

}  // namespace tarnwick::bar::x11
