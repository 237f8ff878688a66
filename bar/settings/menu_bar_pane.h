#pragma once

#include <QWidget>

#include "bar/settings/bar_settings.h"

class QCheckBox;
class QComboBox;

namespace tarnwick::bar {

// The window with the bar's own options. What is chosen counts at once. Deletes itself on close.
class MenuBarPane : public QWidget {
  Q_OBJECT

 public:
  explicit MenuBarPane(BarSettings& settings);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void present(const BarOptions& options);
  BarOptions chosen() const;

  BarSettings& settings_;
  QComboBox* hours_;
  QComboBox* iconSide_;
  QCheckBox* date_;
  QCheckBox* applicationName_;
};

}  // namespace tarnwick::bar
