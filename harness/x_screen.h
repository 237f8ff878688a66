#pragma once

#include <QImage>
#include <QRect>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarnwick::test {

// Whether a window manager runs on the display.
bool windowManagerRuns(const QString& display);

// The display's root window; null when it cannot be read.
QImage grabScreen(const QString& display);

// Where a window lies on the screen; empty when it is gone.
QRect placeOf(const QString& display, std::uint32_t window);

// A property of 32-bit numbers of a window, 0 for the root window; empty when there is none.
std::vector<std::uint32_t> numbersOf(const QString& display, std::uint32_t window,
                                     const char* property);
std::uint32_t atomOf(const QString& display, const char* name);
// A client message about a window to the root window, as a pager asks the window manager.
void askWindowManager(const QString& display, std::uint32_t window, const char* request,
                      const std::array<std::uint32_t, 5>& data);

// Hears every change of one property of a window, however short what it says lasts.
class PropertyWatch {
 public:
  PropertyWatch(const QString& display, std::uint32_t window, const char* property);
  ~PropertyWatch();
  PropertyWatch(const PropertyWatch&) = delete;
  PropertyWatch& operator=(const PropertyWatch&) = delete;

  int changes();  // since it was made

 private:
  struct Display;

  std::unique_ptr<Display> display_;
  std::uint32_t property_ = 0;
  int changes_ = 0;
};

// A window that is shown past the window manager: a menu, a tooltip, the panel.
struct PopupWindow {
  QRect frame;     // pixels
  qint64 pid = 0;  // 0 when its program does not say
  QString name;
};
// Lowest first.
std::vector<PopupWindow> popups(const QString& display);

// Pointer and keyboard as another program's menu holds them, until it goes.
class InputGrab {
 public:
  explicit InputGrab(const QString& display);
  ~InputGrab();
  InputGrab(const InputGrab&) = delete;
  InputGrab& operator=(const InputGrab&) = delete;

  bool held() const { return held_; }

 private:
  struct Display;

  std::unique_ptr<Display> display_;
  bool held_ = false;
};

}  // namespace tarnwick::test
