#include "bar/board/position_store.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "bar/row/key_order.h"

namespace tarnwick::bar {

namespace {

constexpr int delayMs = 1'000;
constexpr int orderDelayMs = 50;  // a bar that is killed then must not undo what was done in sight
// Between two writes: a program may rearrange the row without end.
constexpr qint64 spacingMs = 1'000;
constexpr int longestDelayMs = 64'000;  // of another attempt after failed ones
constexpr std::size_t maximumKeys = ItemRow::maximumKeys;

std::vector<std::string> keysOf(const nlohmann::json& document) {
  std::vector<std::string> keys;
  if (!document.is_array()) return keys;
  for (const auto& key : document) {
    if (key.is_string() && keys.size() < maximumKeys) keys.push_back(key.get<std::string>());
  }
  return keys;
}

}  // namespace

PositionStore::PositionStore(Board& board, desktop::JsonFile file, QObject* parent)
    : QObject(parent),
      board_(board),
      file_(std::move(file)),
      saved_(keysOf(file_.read())),
      retryMs_(delayMs) {
  board_.row().restoreOrder(saved_);
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &PositionStore::save);
  // What comes in a burst, as at the start of a session or in a row of drags, is stored together.
  const auto saveIn = [this](int delay) {
    if (!timer_.isActive() || timer_.remainingTime() > delay) timer_.start(delay);
  };
  connect(&board_, &Board::orderChanged, this, [this, saveIn] {
    const qint64 wait = sinceSaved_.isValid() ? spacingMs - sinceSaved_.elapsed() : 0;
    saveIn(std::max(orderDelayMs, static_cast<int>(wait)));
  });
  connect(&board_, &Board::itemAdded, this, [saveIn] { saveIn(delayMs); });
  // Its twin may have taken a place of its own.
  connect(&board_, &Board::itemRemoved, this, [saveIn] { saveIn(delayMs); });
}

void PositionStore::save() {
  timer_.stop();
  auto keys = board_.row().rememberedOrder();
  if (keys == saved_) return;
  const bool written = file_.update([&](nlohmann::json& document) {
    document = mergedOrder(keys, keysOf(document), maximumKeys);
    return true;
  });
  sinceSaved_.start();
  if (written) {
    saved_ = std::move(keys);
    retryMs_ = delayMs;
  } else {
    retryMs_ = std::min(retryMs_ * 2, longestDelayMs);
    timer_.start(retryMs_);
  }
}

}  // namespace tarnwick::bar
