#include "bar/board/item.h"

#include <QTimer>
#include <chrono>

namespace tarnwick::bar {

using namespace std::chrono_literals;

void Item::appeared() {
  if (hasPicture()) {
    fresh_ = false;
    return;
  }
  QTimer::singleShot(3s, this, [this] {
    fresh_ = false;
    if (!hasPicture()) emit contentChanged();
  });
}

}  // namespace tarnwick::bar
