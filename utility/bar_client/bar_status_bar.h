#pragma once

#include <QObject>
#include <QPointF>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/base/callback_list.h"
#include "core/ports/status_bar.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"

namespace tarnwick {

// Our own status items in the bar. They are put in again, in the order in which they were made,
// whenever a bar appears. Needs a QGuiApplication.
class BarStatusBar : public QObject, public StatusBar {
  Q_OBJECT

 public:
  BarStatusBar(BarConnection& bar, const BarSnapshots& snapshots);

  std::unique_ptr<StatusItem> addItem(double length, const std::string& autosaveName) override;
  Registration onVanished(std::function<void()> callback) override {
    return vanished_.add(std::move(callback));
  }
  Registration onItemsPlaced(std::function<void()> callback) override {
    return placed_.add(std::move(callback));
  }

  // Whether one of our items stands there now, as far as the bar tells.
  bool hasItemAt(Point place);

 private:
  class Item;
  struct Entry {
    std::string autosaveName;
    double length = 0;
    std::optional<Drawing> image;
    std::function<void(const ClickEvent&)> onClick;
    std::optional<quint64> id;  // known once the bar has answered
  };
  using EntryPtr = std::shared_ptr<Entry>;

  void put(const EntryPtr& entry);
  bool arePlaced() const;
  void remove(const EntryPtr& entry);
  void sendLength(const Entry& entry);
  void sendImage(const Entry& entry);
  std::optional<Rect> frame(const Entry& entry);
  void onClicked(quint64 id, uint button, uint modifiers, QPointF at);
  void watchPrimaryScreen();
  void sendImagesOfNewDensity();

  BarConnection& bar_;
  const BarSnapshots& snapshots_;
  std::vector<EntryPtr> entries_;
  double pixelsPerPoint_ = 2;
  CallbackList vanished_;
  CallbackList placed_;
};

}  // namespace tarnwick
