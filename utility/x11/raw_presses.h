#pragma once

#include <QAbstractNativeEventFilter>
#include <QPoint>

#include "common/base/callback_list.h"
#include "core/ports/event_monitors.h"

namespace tarnwick::x11 {

// Presses of buttons anywhere on the X server, also during other clients' grabs:
// raw events of XInput 2.2. Nothing is grabbed or swallowed. Watches only while somebody listens.
class RawPresses : public EventMonitors, public QAbstractNativeEventFilter {
 public:
  // Presses over windows of this program are not reported, nor those at places of the root window,
  // in device pixels, of which `isOurItem` says so.
  explicit RawPresses(std::function<bool(QPoint)> isOurItem);
  ~RawPresses() override;

  Registration addGlobalPressMonitor(std::function<void()> callback) override;

  // Calls for presses of any button but the wheel's outside of the windows of this program, also
  // those on its items in the bar.
  Registration addPressMonitor(std::function<void()> callback);

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  Registration listen(CallbackList& listeners, std::function<void()> callback);
  void select(bool on);

  std::function<bool(QPoint)> isOurItem_;
  CallbackList global_;
  CallbackList outside_;
  int listening_ = 0;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace tarnwick::x11
