#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// Passive grabs of Super + left button on a window, whatever locks are on, so that such a press
// over a foreign window inside it reaches it too. Follows changes of the keyboard. Owned by the
// window.
class SuperGrabs : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  explicit SuperGrabs(QWidget& window);

  // Grabs anew: after the window's id has changed.
  void renew();

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  QWidget& window_;
  QTimer renewTimer_;
  std::uint8_t keyboardEvent_ = 0;  // of the X keyboard extension
};

}  // namespace tarnwick::bar::x11
