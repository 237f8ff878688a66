#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <string>
#include <vector>

#include "bar/board/board.h"
#include "common/files/json_file.h"

namespace tarnwick::bar {

// Keeps the row's order in a file, one JSON array of item keys, left to right, those of absent
// items among them. Keys that another bar has written meanwhile are kept.
class PositionStore : public QObject {
  Q_OBJECT

 public:
  // Puts the stored order into the board's row: to be made before the first item comes.
  PositionStore(Board& board, desktop::JsonFile file, QObject* parent = nullptr);

  // Writes the order if it differs from what was last written or read. Happens by itself within a
  // second of a change, and at once after the first drag in a second.
  void save();

 private:
  Board& board_;
  desktop::JsonFile file_;
  std::vector<std::string> saved_;
  int retryMs_;
  QElapsedTimer sinceSaved_;  // the last attempt
  QTimer timer_;
};

}  // namespace tarnwick::bar
