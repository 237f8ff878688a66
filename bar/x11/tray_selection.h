#pragma once

#include <QColor>
#include <QObject>
#include <functional>
#include <vector>

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// What tray clients read from their manager.
struct TrayLook {
  xcb_visualid_t visual = 0;  // what icons are to be drawn with
  QColor foreground;
  std::uint32_t iconSide = 0;  // pixels
  bool operator==(const TrayLook&) const = default;
};

// The selection _NET_SYSTEM_TRAY_Sn, by which tray clients find their manager. Waits for its turn
// while another program owns it, and again after another one took it.
class TraySelection : public QObject {
  Q_OBJECT

 public:
  explicit TraySelection(QObject* parent = nullptr) : QObject(parent) {}
  ~TraySelection() override { release(); }

  // Goes on asynchronously; `dockRequested` comes from then on.
  void acquire(const TrayLook& look);
  // Clients learn of it by the owner window's end.
  void release();
  void setLook(const TrayLook& look);

  // Runs `callback` with the server's present time; never, when released meanwhile.
  void withServerTime(std::function<void(xcb_timestamp_t)> callback);

  // Takes the events that are about the selection; false for all others.
  bool handle(const xcb_generic_event_t* event);

 signals:
  void dockRequested(quint32 window);
  // Another program took the selection. The owner window is still there.
  void lost();

 private:
  void createWindow();
  void take(xcb_timestamp_t time);
  void giveUp();
  void writeLook();

  TrayLook look_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  bool owner_ = false;
  std::vector<std::function<void(xcb_timestamp_t)>> waitingForTime_;
};

}  // namespace tarnwick::bar::x11
