#pragma once

#include <QAbstractNativeEventFilter>
#include <QPoint>

#include "platform/callback_list.h"
#include "platform/event_monitors.h"

namespace tarnwick::x11 {

// Presses of the left and right button anywhere on the X server, also during other clients' grabs:
// raw events of XInput 2.2. Nothing is grabbed or swallowed. Watches only while somebody listens.
class RawPresses : public EventMonitors, public QAbstractNativeEventFilter {
 public:
  // `isOurs` tells whether a place of the root window, in device pixels, is ours: presses there are
  // not reported.
  explicit RawPresses(std::function<bool(QPoint)> isOurs);
  ~RawPresses() override;

  Registration addGlobalPressMonitor(std::function<void()> callback) override;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void select(bool on);

  std::function<bool(QPoint)> isOurs_;
  CallbackList listeners_;
  int listening_ = 0;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace tarnwick::x11
