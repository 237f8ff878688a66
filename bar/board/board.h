#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "bar/board/item.h"
#include "bar/row/item_row.h"
#include "bar/row/row_pointer.h"

namespace tarnwick::bar {

// The bar's items and their row. Owns every item, keeps the row's lengths and order up to date, and
// says when something has to be drawn, saved or announced. Independent of windows and protocols.
class Board : public QObject {
  Q_OBJECT

 public:
  explicit Board(QObject* parent = nullptr);
  ~Board() override;

  // Takes the item in and gives it an id, never reused while the bar runs. An XEmbed item whose
  // process also shows a StatusNotifierItem is kept but takes no room and is not listed: a client
  // that shows up both ways is one item. When the StatusNotifierItem goes, the XEmbed item takes
  // over its place.
  ItemId add(std::unique_ptr<Item> item);
  void remove(ItemId id);
  Item* item(ItemId id) const;  // nullptr when gone

  // Listed items in order of registration: all but twins and foreign items without a length.
  std::vector<ItemId> listed() const;
  // Lower left corner of its place, in points: where its menu hangs.
  QPointF anchor(ItemId id) const;

  ItemRow& row() { return row_; }
  const ItemRow& row() const { return row_; }
  RowPointer& pointer() { return pointer_; }

  void setBounds(double right, double height);
  // Moves an item immediately left of another, for good. While anybody holds an item, this waits
  // until that is over; wishes are then granted in order, and of several for one item the last.
  void placeLeftOf(ItemId id, ItemId sibling);

  // One event of the left button at a point of the bar, from the user's hand or posted by a
  // program. While the user's hand holds an item, posted events are ignored, and the other way
  // round; but a poster silent for a second, or holding it for five, loses the item to the user's
  // hand. `modifiers` are Shift 1, Control 2, Alt 4, Super 8.
  using Hand = RowPointer::Hand;
  enum class Phase : std::uint8_t { press, drag, release, cancel };
  void leftButton(Hand hand, Phase phase, QPointF at, std::uint32_t modifiers);
  std::optional<Hand> holdingHand() const { return hand_; }
  // A program's posted press is still held, for five seconds at most, and it has been heard of
  // within the last second.
  bool isHeldByPoster() const;

 signals:
  void itemAdded(tarnwick::bar::ItemId id);
  void itemRemoved(tarnwick::bar::ItemId id);
  // At most once per turn of the loop, however many items changed.
  void layoutChanged();
  // One item is to be drawn again where it is.
  void repaintNeeded(tarnwick::bar::ItemId id);
  // The list, a record or a frame has changed: told at once, then at most every 33 ms, but always
  // before applicationAppeared().
  void itemsChanged();
  // A process that had no item until now has its first listed one. After itemsChanged().
  void applicationAppeared(qint32 pid);
  // The user or a program has put the items into another order: save it.
  void orderChanged();

 private:
  struct Entry {
    std::unique_ptr<Item> item;
    ItemKind kind = ItemKind::sni;
    qint32 pid = 0;
    double length = 0;
    bool twin = false;   // an XEmbed item whose process shows a StatusNotifierItem too
    bool shown = false;  // has had a place with some room
    Rect cell;           // where it was last told to be
  };

  bool isListed(const Entry& entry) const;
  bool isTwin(const Entry& entry) const;
  void putIntoRow(ItemId id, Entry& entry);
  // `vacated`: the key under which the place of an item that has just gone is remembered.
  void updateTwins(const std::string& vacated = {});
  void updateLength(ItemId id);
  void updateRecord(ItemId id);
  bool isHeld() const { return hand_ == Hand::user || isHeldByPoster(); }
  void apply(const RowPointer::Outcome& outcome, QPointF at = {}, std::uint32_t modifiers = 0);
  void placeWaiting();
  void rowChanged(bool items);
  void scheduleFlush(bool layout, bool items);
  void flush();
  std::vector<qint32> freshApplications();
  void announceItems();

  ItemRow row_;
  RowPointer pointer_{row_};
  std::map<ItemId, Entry> items_;
  std::set<qint32> appeared_;  // processes announced, until their last item goes
  ItemId nextId_ = 1;
  std::optional<Hand> hand_;
  std::vector<std::pair<ItemId, ItemId>> waitingPlaces_;  // item, its right neighbour to be
  QElapsedTimer heldSince_;
  QElapsedTimer lastPosted_;
  QTimer itemsSpacing_;  // runs for a while after itemsChanged()
  bool flushPending_ = false;
  bool layoutPending_ = false;
  bool itemsPending_ = false;
  bool itemsChangedLater_ = false;
};

Qt::KeyboardModifiers toQtModifiers(std::uint32_t modifiers);
std::uint32_t fromQtModifiers(Qt::KeyboardModifiers modifiers);

}  // namespace tarnwick::bar
