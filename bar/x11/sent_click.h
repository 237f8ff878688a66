#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

#include "bar/x11/tray_selection.h"
#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// A click sent to an embedded icon as if the pointer were over it: enter, press, release, and leave
// once the menu it opened is gone. A menu that comes late is waited for after the leave. Goes on by
// timers; the pointer stays where it is.
class SentClick : public QObject {
  Q_OBJECT

 public:
  SentClick(xcb_window_t icon, TraySelection& selection);
  // Lets go of a button that is still pressed.
  ~SentClick() override;

  // Ends a wait for a late menu. False while a click is under way.
  bool makeReady();
  // `button` as X numbers them, `state` the core modifier bits. Ignored while one is under way.
  void start(std::uint8_t button, std::uint16_t state = 0);
  // Notches of a wheel (`button` 4 to 7), sent at once.
  void turnWheel(std::uint8_t button, int notches);
  // Before the press nothing more is sent. Afterwards the client gets an Escape: GTK 2 and 3 pass
  // it on to the menu that holds their grab, which closes.
  void cancel();

 signals:
  void finished();

 private:
  enum class Phase : std::uint8_t { idle, starting, entered, pressed, watchingMenu, left };

  void enter(xcb_timestamp_t time);
  void press();
  void release();
  void watchMenu();
  void leave();
  void end();
  void findTarget();
  void sendCrossing(std::uint8_t type);
  void sendButton(std::uint8_t type, std::uint16_t state, xcb_timestamp_t time);
  void sendEscape();

  xcb_window_t icon_;
  TraySelection& selection_;
  QTimer timer_;
  Phase phase_ = Phase::idle;
  unsigned starts_ = 0;  // so far
  std::uint8_t button_ = 0;
  std::uint16_t state_ = 0;
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  xcb_window_t target_ = XCB_WINDOW_NONE;
  QPoint inTarget_;
  QPoint onRoot_;
  bool menuSeen_ = false;
  int looks_ = 0;
};

}  // namespace tarnwick::bar::x11
