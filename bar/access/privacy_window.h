#pragma once

#include <QPointer>
#include <QWidget>

#include "bar/access/access_store.h"

class QLabel;
class QVBoxLayout;

namespace tarnwick::bar {

// Lists who has been allowed what, each with a button to take it back. Deletes itself on close.
class PrivacyWindow : public QWidget {
  Q_OBJECT

 public:
  explicit PrivacyWindow(AccessStore& store);

 signals:
  // Whoever has been told "Don't Allow" may ask again.
  void askAgainClicked();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fill();
  // Whether the last change was saved.
  void tell(bool saved);
  QWidget* row(const std::string& executable, Capability capability);

  AccessStore& store_;
  QVBoxLayout* rows_ = nullptr;
  QLabel* failure_ = nullptr;
};

}  // namespace tarnwick::bar
