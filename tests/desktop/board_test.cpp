#include "bar/board/board.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>

#include "bar/board/position_store.h"
#include "harness/wait.h"

namespace tarnwick::bar {
namespace {

class FakeItem : public Item {
 public:
  FakeItem(ItemKind kind, qint32 pid, QString key, double length)
      : kind_(kind), pid_(pid), key_(std::move(key)), length_(length) {}

  void setLength(double length) {
    length_ = length;
    emit lengthChanged();
  }

  ItemRecord record() const override { return {pid_, kind_, key_, {}, {}, {}, {}}; }
  QString key() const override { return key_; }
  double length() const override { return length_; }
  void paint(QPainter&, const QRectF&, double, const QColor&) override {}
  void clicked(Qt::MouseButton, Qt::KeyboardModifiers, QPointF, QPointF) override {}

 private:
  ItemKind kind_;
  qint32 pid_;
  QString key_;
  double length_;
};

class BoardTest : public testing::Test {
 protected:
  void SetUp() override {
    board.setBounds(1000, 24);
    board.row().restoreOrder({"first", "both", "last"});
    QObject::connect(&board, &Board::itemsChanged, [this] { ++changes; });
    QObject::connect(&board, &Board::applicationAppeared,
                     [this](qint32 pid) { appeared.push_back(pid); });
  }

  ItemId add(ItemKind kind, qint32 pid, const QString& key, double length = 20) {
    return board.add(std::make_unique<FakeItem>(kind, pid, key, length));
  }

  void settle() { QCoreApplication::processEvents(); }

  Board board;
  int changes = 0;
  std::vector<qint32> appeared;
};

TEST_F(BoardTest, ClientShownBothWaysIsOneItemAndKeepsItsPlace) {
  const ItemId first = add(ItemKind::sni, 1, "first");
  const ItemId last = add(ItemKind::sni, 3, "last");
  using Ids = std::vector<ItemId>;
  // The icon of the one protocol comes first, then that of the other under the same key.
  const ItemId icon = add(ItemKind::xembed, 2, "both");
  EXPECT_EQ(board.row().order(), (Ids{first, icon, last}));
  const ItemId item = add(ItemKind::sni, 2, "both");
  EXPECT_EQ(board.row().order(), (Ids{first, item, last}));
  EXPECT_EQ(board.listed(), (Ids{first, last, item}));
  board.remove(item);
  EXPECT_EQ(board.row().order(), (Ids{first, icon, last}));
  board.remove(icon);
  // And the other way round.
  const ItemId again = add(ItemKind::sni, 2, "both");
  add(ItemKind::xembed, 2, "both");
  EXPECT_EQ(board.row().order(), (Ids{first, again, last}));
  EXPECT_EQ(board.row().rememberedOrder(), (std::vector<std::string>{"first", "both", "last"}));
  // Under a key of its own the icon does not go back to where it stood before.
  const ItemId other = add(ItemKind::xembed, 4, "icon");
  board.row().moveTo(other, 0);
  board.remove(add(ItemKind::sni, 4, "item"));
  EXPECT_EQ(board.row().order(), (Ids{first, again, last, other}));
}

TEST_F(BoardTest, ManyChangesOfOneTurnAreToldOnce) {
  std::vector<ItemId> ids;
  for (int i = 0; i < 50; ++i) ids.push_back(add(ItemKind::sni, 7, QString::number(i)));
  for (const ItemId id : ids) static_cast<FakeItem*>(board.item(id))->setLength(30);
  EXPECT_EQ(board.row().left(), 1000 - 50 * 30);
  settle();
  EXPECT_EQ(changes, 1);
}

TEST_F(BoardTest, AnApplicationAppearsWithItsFirstListedItemOnly) {
  const ItemId passive = add(ItemKind::sni, 5, "passive", 0);
  settle();
  EXPECT_TRUE(appeared.empty());
  EXPECT_TRUE(board.listed().empty());
  auto* const item = static_cast<FakeItem*>(board.item(passive));
  for (const double length : {20.0, 0.0, 20.0}) {
    const int before = changes;
    item->setLength(length);
    EXPECT_TRUE(test::waitFor([&] { return changes > before; })) << "told of what is listed";
  }
  add(ItemKind::native, 5, "native", 0);
  settle();
  EXPECT_EQ(appeared, std::vector<qint32>{5});
  for (const ItemId id : board.listed()) board.remove(id);
  add(ItemKind::sni, 5, "passive");
  settle();
  EXPECT_EQ(appeared, (std::vector<qint32>{5, 5}));
}

TEST_F(BoardTest, PlacingAnItemWaitsForWhoeverHoldsOne) {
  const ItemId a = add(ItemKind::sni, 1, "a");
  const ItemId b = add(ItemKind::sni, 1, "b");
  const ItemId c = add(ItemKind::sni, 1, "c");
  const auto event = [this](Board::Phase phase, double x) {
    board.leftButton(Board::Hand::user, phase, {x, 12}, RowPointer::superModifier);
  };
  event(Board::Phase::press, 990);
  event(Board::Phase::drag, 965);
  const ItemId gone = add(ItemKind::sni, 1, "gone", 0);
  board.placeLeftOf(b, c);
  board.placeLeftOf(c, a);
  board.placeLeftOf(gone, a);
  board.placeLeftOf(b, c);
  board.remove(gone);
  EXPECT_EQ(board.row().order(), (std::vector<ItemId>{a, c, b}));
  int saves = 0;
  QObject::connect(&board, &Board::orderChanged, [&saves] { ++saves; });
  event(Board::Phase::cancel, 965);
  EXPECT_EQ(board.row().order(), (std::vector<ItemId>{b, c, a}));
  saves = 0;
  board.placeLeftOf(c, b);
  EXPECT_EQ(board.row().order(), (std::vector<ItemId>{c, b, a}));
  EXPECT_EQ(saves, 1);
}

TEST_F(BoardTest, TheOrderIsStoredOnceASecondHoweverOftenItChanges) {
  const QTemporaryDir folder;
  const std::filesystem::path path = folder.path().toStdString() + "/positions.json";
  PositionStore store(board, desktop::JsonFile(path));
  const ItemId a = add(ItemKind::sni, 1, "a");
  const ItemId b = add(ItemKind::sni, 1, "b");
  store.save();
  const auto stored = std::filesystem::last_write_time(path);
  board.placeLeftOf(b, a);
  const auto since = [&] { return std::filesystem::last_write_time(path) - stored; };
  ASSERT_TRUE(test::waitFor([&] { return since().count() != 0; }));
  EXPECT_GE(since(), std::chrono::milliseconds(900)) << "timers and times of files are coarse";
}

TEST_F(BoardTest, PosterThatFellSilentLosesItsItemToTheHand) {
  const ItemId left = add(ItemKind::sni, 1, "first");
  const ItemId right = add(ItemKind::sni, 3, "last");
  const auto event = [this](Board::Hand hand, Board::Phase phase, double x) {
    board.leftButton(hand, phase, {x, 12}, RowPointer::superModifier);
  };
  event(Board::Hand::posted, Board::Phase::press, 970);
  event(Board::Hand::posted, Board::Phase::drag, 995);
  EXPECT_EQ(board.row().order(), (std::vector<ItemId>{right, left}));
  event(Board::Hand::user, Board::Phase::press, 970);
  EXPECT_EQ(board.holdingHand(), Board::Hand::posted);
  ASSERT_TRUE(test::waitFor([this] { return !board.isHeldByPoster(); }));
  event(Board::Hand::user, Board::Phase::press, 970);
  EXPECT_EQ(board.holdingHand(), Board::Hand::user);
  // What the poster had moved is back where it was.
  EXPECT_EQ(board.row().order(), (std::vector<ItemId>{left, right}));
  event(Board::Hand::posted, Board::Phase::release, 900);
  EXPECT_EQ(board.holdingHand(), Board::Hand::user);
}

}  // namespace
}  // namespace tarnwick::bar
