#pragma once

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "bar/board/board.h"
#include "bar/x11/tray_selection.h"
#include "bar/x11/xembed_item.h"
#include "common/identity/identity.h"

namespace tarnwick::bar::x11 {

// The XEmbed system tray manager: takes icons in, puts their items on the board, hands X events to
// them and gives the icons back. `board`, `barWindow` and `identities` outlive it.
class TrayManager : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  TrayManager(Board& board, QWidget& barWindow, desktop::IdentityResolver& identities,
              QObject* parent = nullptr);
  ~TrayManager() override;  // shuts down

  // False without an X server that has Composite, Damage, XFixes and an ARGB visual. Taking the
  // tray's selection goes on asynchronously, and waits while another program owns it.
  bool start();
  // Hands every icon back to the root window, then gives up the selection, so that the clients dock
  // again with the next manager.
  void shutdown();

 private:
  struct Entry {
    QPointer<XembedItem> item;
    ItemId id = 0;
    qint32 pid = 0;  // 0 when unknown
  };

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  TrayLook look() const;
  void queueDock(xcb_window_t window);
  void dockQueued();
  void dock(const IconFacts& facts);
  void remove(xcb_window_t icon);
  void releaseIcons();
  void watchSurface();

  Board& board_;
  QWidget& bar_;
  desktop::IdentityResolver& identities_;
  TraySelection selection_;
  xcb_visualid_t visual_ = 0;
  bool running_ = false;
  QHash<xcb_window_t, Entry> icons_;
  QHash<xcb_window_t, xcb_window_t> wrappers_;  // wrapper to icon
  std::vector<xcb_window_t> docking_;
};

}  // namespace tarnwick::bar::x11
