#pragma once

#include <QObject>
#include <QSizeF>
#include <map>
#include <variant>

#include "bar/board/board.h"
#include "bar/native/native_item.h"

namespace tarnwick::bar {

// The native items of all connections: checks what their owners ask for and lets nobody touch
// another's item.
class NativeItems : public QObject {
  Q_OBJECT

 public:
  enum class Error : std::uint8_t { none, invalid, limit, noSuchItem };

  static constexpr int maximumPerOwner = 64;
  static constexpr double maximumLength = 100'000;    // points
  static constexpr int maximumNameLength = 256;       // characters
  static constexpr quint32 maximumImageSide = 1'024;  // pixels

  explicit NativeItems(Board& board, QObject* parent = nullptr);

  // `owner` is the unique name of the asking connection in all of these.
  std::variant<ItemId, Error> add(const QString& owner, qint32 pid, const QString& autosaveName,
                                  double length);
  Error setLength(const QString& owner, ItemId id, double length);
  // `rgba` is width x height x 4 bytes in the order R, G, B, A, premultiplied, row by row from the
  // top. Width and height 0 with no bytes take the picture away.
  Error setImage(const QString& owner, ItemId id, QSizeF points, quint32 width, quint32 height,
                 const QByteArray& rgba, bool isTemplate);
  // Moves `id` immediately left of `sibling`, both of the owner's own and not the same.
  Error placeLeftOf(const QString& owner, ItemId id, ItemId sibling);
  Error remove(const QString& owner, ItemId id);
  bool owns(const QString& owner, ItemId id) const { return find(owner, id) != nullptr; }
  // The connection has gone, and its items go with it.
  void dropOwner(const QString& owner);

 signals:
  void clicked(const QString& owner, tarnwick::bar::ItemId id, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers, QPointF globalPoints);

 private:
  NativeItem* find(const QString& owner, ItemId id) const;

  Board& board_;
  std::map<ItemId, NativeItem*> items_;  // owned by the board, removed here only
};

}  // namespace tarnwick::bar
