#pragma once

#include <memory>

namespace tarnwick {

class SettingsView;

// The window that shows a SettingsView: titled and closable, neither resizable nor to be minimised,
// as large as its content at first and centred on the screen. Closing only hides it; it appears
// again where it was. Hidden at first.
class SettingsWindow {
 public:
  virtual ~SettingsWindow() = default;

  // Shows it and gives it the keyboard.
  virtual void makeKeyAndOrderFront() = 0;
  // Puts it above the windows of every application, whichever is active.
  virtual void orderFrontRegardless() = 0;
  virtual bool isVisible() const = 0;
};

class SettingsWindows {
 public:
  virtual ~SettingsWindows() = default;
  // The window draws the view's state, again after every change, and calls the view's appear()
  // each time its content comes into sight.
  [[nodiscard]] virtual std::unique_ptr<SettingsWindow> makeSettingsWindow(
      std::shared_ptr<SettingsView> view) = 0;
};

}  // namespace tarnwick
