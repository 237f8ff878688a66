#pragma once

#include "platform/application.h"

namespace tarnwick {

// This process, which has a QApplication.
class QtApplication : public Application {
 public:
  static constexpr const char* identifier = "org.tarnwick.Tarnwick";

  QtApplication();

  void setActivationPolicy(ActivationPolicy policy) override;
  std::string bundleIdentifier() const override { return identifier; }
};

}  // namespace tarnwick
