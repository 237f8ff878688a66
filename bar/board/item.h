#pragma once

#include <QObject>
#include <QPainter>
#include <QPoint>
#include <QRectF>
#include <QString>
#include <cstdint>

#include "bar/row/item_row.h"

namespace tarnwick::bar {

enum class ItemKind : std::uint8_t { sni, xembed, native };

// What the bar tells others about an item.
struct ItemRecord {
  qint32 pid = 0;  // owning process; 0 when unknown
  ItemKind kind = ItemKind::sni;
  QString hint;  // item Id, WM_CLASS or autosave name
  QString title;
  QString busName;     // where its D-Bus object lives; empty for XEmbed items
  QString objectPath;  // the item's object
  QString menuPath;    // its dbusmenu object; empty when it has none
};

// One item of the bar, of whatever protocol. Owned by the Board from Board::add on. Everything is
// in points of the bar unless a name says pixels. Implementations are asynchronous towards their
// client: nothing here waits for it.
class Item : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  virtual ItemRecord record() const = 0;
  // What its place in the row is remembered under, stable across restarts of its owner.
  virtual QString key() const = 0;
  // How much room it takes in the row; 0 hides it.
  virtual double length() const = 0;

  // Draws it into `cell`, the item's whole place in the painter's coordinates, on a transparent
  // ground. `scale` is the device pixels per point of the painter: pictures are chosen for it.
  // `foreground` is the colour of text and templates.
  virtual void paint(QPainter& painter, const QRectF& cell, double scale,
                     const QColor& foreground) = 0;

  // False while paint() has nothing of the item's own to draw because its owner has not given it
  // yet. Once the item is no longer fresh, paint() draws a placeholder instead.
  virtual bool hasPicture() const { return true; }
  // Its owner may still be about to give its first picture: for three seconds from when it took its
  // first place in the row, if it had none then.
  bool isFresh() const { return fresh_; }
  // To be called once, when it has taken that place.
  void appeared();

  // Nothing of it is to be seen: it takes room, but the bar shows through and gives no feedback.
  virtual bool isBlank() const { return false; }

  // Its place in the row has changed. `cell` may lie far beyond the bar's left end; it is null when
  // the item takes no room.
  virtual void placed(const QRectF& cell) { Q_UNUSED(cell) }

  // The user clicked it (on release), without the Super key. `globalPoints` is the pointer and
  // `anchor` the item's lower left corner, both in points of the primary monitor.
  virtual void clicked(Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                       QPointF globalPoints, QPointF anchor) = 0;
  // Wheel over it: `angleDelta` as in QWheelEvent.
  virtual void scrolled(QPoint angleDelta) { Q_UNUSED(angleDelta) }
  // Rich or plain text; empty for none.
  virtual QString toolTip() const { return {}; }

  // For other programs: open its menu where its owner can be told to (its menu is then read from
  // record().menuPath), or activate it when it has none; and close that menu again.
  virtual void press(QPointF anchor) { Q_UNUSED(anchor) }
  // For other programs that show its menu themselves, if it has one that can be read: has its owner
  // show what it shows itself, at `anchor`.
  virtual void activate(QPointF anchor) { press(anchor); }
  virtual void cancelPress() {}

 signals:
  void lengthChanged();   // length() has a new value
  void contentChanged();  // paint() would draw something else
  void recordChanged();   // record() would answer something else

 private:
  bool fresh_ = true;
};

}  // namespace tarnwick::bar
