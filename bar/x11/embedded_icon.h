#pragma once

#include <xcb/damage.h>

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>

#include "bar/x11/icon_facts.h"
#include "bar/x11/icon_picture.h"

namespace tarnwick::bar::x11 {

// A foreign tray icon's window inside a wrapper window of ours: a child of the bar's window,
// redirected, so that what the icon paints is read here and shown by the bar, while real clicks
// reach the icon where the wrapper lies. Square and of our size, whatever the client asks for.
// Dropping it hands a living icon back to the root window, unmapped. All pixels are device pixels.
class EmbeddedIcon : public QObject {
  Q_OBJECT

 public:
  // `ground` is the bar's colour, given to icons that cannot be transparent.
  EmbeddedIcon(const IconFacts& facts, xcb_window_t bar, std::uint16_t side, const QColor& ground);
  ~EmbeddedIcon() override;

  xcb_window_t icon() const { return icon_; }
  xcb_window_t wrapper() const { return wrapper_; }
  const QImage& picture() const { return picture_; }  // null until the client has painted
  bool isShown() const { return shown_; }             // whether the client wants it seen
  bool isGone() const { return gone_; }               // `left` has been emitted
  const QString& title() const { return title_; }
  std::uint16_t side() const { return side_; }

  // Place within the bar's window.
  void move(QPoint place);
  void setSide(std::uint16_t side);
  // The pointer then passes through the wrapper.
  void setPointerThrough(bool through);

  // An event of the icon or of its wrapper.
  void handle(const xcb_generic_event_t* event);

 signals:
  void pictureChanged();
  void shownChanged();
  void titleChanged();
  // The icon is gone, or in another program's hands.
  void left();

 private:
  enum Part : unsigned { picturePart = 1, infoPart = 2, titlePart = 4, placePart = 8 };

  void createWrapper(xcb_window_t bar, const QColor& ground);
  void embed(bool wasMapped);
  void fitIcon();
  void follow(std::optional<bool> wantsMapped);
  void show(bool shown);
  void setShown(bool shown);
  void unmapped(std::uint32_t sequence);
  void leave();
  void sizeAsked();
  void sendGeometry();
  void refreshSoon(unsigned parts);
  void refresh();
  void takePicture(xcb_get_image_reply_t& image);
  void countEvent();
  void setDeaf(bool deaf);

  xcb_window_t icon_;
  xcb_window_t wrapper_ = XCB_WINDOW_NONE;
  xcb_colormap_t colormap_ = XCB_NONE;
  xcb_damage_damage_t damage_ = XCB_NONE;
  xcb_visualid_t visual_;
  std::uint8_t depth_;
  std::uint16_t side_;
  QPoint place_;
  QRgb ground_;
  std::optional<PixelLayout> layout_;
  QImage picture_;
  QString title_;
  bool shown_ = false;
  bool hasInfo_;       // the client speaks by _XEMBED_INFO
  bool gone_ = false;  // the window is no longer ours to touch
  bool deaf_ = false;  // its events are turned off for a while
  unsigned mapSequence_ = 0;

  unsigned stale_ = 0;  // parts to be read again
  QTimer refreshTimer_;
  QElapsedTimer clock_;
  qint64 refreshDue_ = 0;  // ms of clock_, as are the next two
  qint64 eventsSince_ = 0;
  qint64 lastSizeAsked_ = 0;
  int events_ = 0;
  int quickAnswers_ = 0;
  bool answerDue_ = false;
};

}  // namespace tarnwick::bar::x11
