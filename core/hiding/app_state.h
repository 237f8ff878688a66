#pragma once

#include <memory>

namespace tarnwick {

class MenuBarController;

// The process's one controller, for callbacks that hold nothing. Set once at launch; empty when the
// controller is gone.
struct AppState {
  static inline std::weak_ptr<MenuBarController> controller;
};

}  // namespace tarnwick
