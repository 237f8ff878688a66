#pragma once

#include <strings.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/ports/collation.h"
#include "core/ports/login_item.h"
#include "core/ports/settings_window.h"
#include "core/ports/system_settings.h"
#include "core/settings/settings_view.h"

namespace tarnwick::test {

// What only the settings window uses: the window itself, the desktop's own settings, a login item,
// and an order of words that knows ASCII.
class FakeSettings : public SettingsWindows,
                     public SystemSettings,
                     public LoginItem,
                     public Collation {
 public:
  struct Window : SettingsWindow {
    void makeKeyAndOrderFront() override {
      if (!std::exchange(visible, true)) view->appear();
      ++timesMadeKey;
    }
    void orderFrontRegardless() override { ++timesFront; }
    bool isVisible() const override { return visible; }

    std::shared_ptr<SettingsView> view;
    bool visible = false;
    int timesMadeKey = 0;
    int timesFront = 0;
  };
  std::vector<Window*> windows;  // all that were made
  std::vector<SettingsPane> panes;
  bool loginEnabled = false;
  bool loginRefused = false;

  std::unique_ptr<SettingsWindow> makeSettingsWindow(std::shared_ptr<SettingsView> view) override {
    auto window = std::make_unique<Window>();
    window->view = std::move(view);
    windows.push_back(window.get());
    return window;
  }
  void open(SettingsPane pane) override { panes.push_back(pane); }
  bool isEnabled() const override { return loginEnabled; }
  bool registerItem() override { return setLogin(true); }
  bool unregisterItem() override { return setLogin(false); }
  int compareIgnoringCase(const std::string& first, const std::string& second) const override {
    return strcasecmp(first.c_str(), second.c_str());
  }

 private:
  bool setLogin(bool enabled) {
    if (!loginRefused) loginEnabled = enabled;
    return !loginRefused;
  }
};

}  // namespace tarnwick::test
