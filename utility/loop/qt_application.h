#pragma once

#include <QObject>

#include "core/ports/application.h"

namespace tarnwick {

// This process, which has a QApplication. A new instance takes this one's place: the process entry
// starts it, in the same process, when everything of this one has been put away.
class QtApplication : public QObject, public Application {
  Q_OBJECT

 public:
  static constexpr const char* identifier = "org.tarnwick.Tarnwick";

  QtApplication();

  void setActivationPolicy(ActivationPolicy policy) override;
  std::string bundleIdentifier() const override { return identifier; }
  std::optional<std::string> bundleInfo(std::string_view key) const override;
  void openNewInstance(std::function<void()> reported) override;
  void terminate() override;

  // A new instance is to follow this one.
  bool hasSuccessor() const { return hasSuccessor_; }

 private:
  bool hasSuccessor_ = false;
};

}  // namespace tarnwick
