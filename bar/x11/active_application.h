#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QString>

#include "common/identity/identity.h"
#include "common/x11/xcb.h"

namespace tarnwick::bar::x11 {

// The name of the application whose window has the keyboard focus (_NET_ACTIVE_WINDOW): from its
// desktop file, else its window class. Empty when there is none, and for the bar's own windows.
// `identities` outlives it.
class ActiveApplication : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  explicit ActiveApplication(desktop::IdentityResolver& identities, QObject* parent = nullptr);
  ~ActiveApplication() override;

  QString name() const { return name_; }

 signals:
  void changed();

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void schedule();
  void update();

  desktop::IdentityResolver& identities_;
  QString name_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  bool scheduled_ = false;
};

}  // namespace tarnwick::bar::x11
