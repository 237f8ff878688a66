#pragma once

#include <xcb/xcb.h>

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace tarnwick::bar::x11 {

// Qt's own connection to the X server; nullptr when the program runs without one.
xcb_connection_t* connection();
int screenNumber();
const xcb_screen_t* screen();
xcb_window_t rootWindow();

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

template <auto collect>
class Pending;

// A request under way whose answer is taken later, so that several share one round trip. An answer
// nobody takes is thrown away. Example: Pending<xcb_get_geometry_reply>.
template <class R, class Cookie, R* (*collect)(xcb_connection_t*, Cookie, xcb_generic_error_t**)>
class Pending<collect> {
 public:
  explicit Pending(Cookie cookie) : sequence_(cookie.sequence) {}
  Pending(Pending&& other) noexcept : sequence_(std::exchange(other.sequence_, 0)) {}
  Pending& operator=(Pending&& other) noexcept {
    std::swap(sequence_, other.sequence_);
    return *this;
  }
  ~Pending() {
    if (sequence_ != 0 && connection()) xcb_discard_reply(connection(), sequence_);
  }

  // Waits for the answer. Null on an error, as when the window is gone, and the second time.
  Reply<R> take() {
    const auto sequence = std::exchange(sequence_, 0);
    return Reply<R>(sequence == 0 ? nullptr : collect(connection(), Cookie{sequence}, nullptr));
  }

 private:
  unsigned int sequence_;
};

// For requests about other clients' windows, which may be gone by the time: drops their error
// instead of letting it reach the event queue. Takes the cookie of a ..._checked request.
inline void quiet(xcb_void_cookie_t cookie) {
  xcb_discard_reply(connection(), cookie.sequence);
}

// Sends an event struct of the protocol (at most 32 bytes). Mask 0 is for the window's creator.
template <class Event>
void sendEvent(xcb_window_t to, std::uint32_t eventMask, const Event& event) {
  static_assert(sizeof event <= 32);
  std::array<char, 32> raw{};
  std::memcpy(raw.data(), &event, sizeof event);
  quiet(xcb_send_event_checked(connection(), 0, to, eventMask, raw.data()));
}

// A window property being read; at most `maxBytes` of it.
class PropertyRead {
 public:
  PropertyRead(xcb_window_t window, xcb_atom_t property, std::uint32_t maxBytes = 4096);

  // Values of format 32 (format and size are checked); empty when missing.
  std::vector<std::uint32_t> numbers();
  // Values of format 8 and their type; type is XCB_ATOM_NONE when missing.
  std::pair<QByteArray, xcb_atom_t> bytes();
  // The same as text, UTF-8 or Latin-1 by its type, at most 1,000 characters.
  QString text();

 private:
  Pending<xcb_get_property_reply> reply_;
};

void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                std::span<const std::uint32_t> values);
void sendMessage(xcb_window_t to, xcb_window_t subject, xcb_atom_t type,
                 const std::array<std::uint32_t, 5>& data, std::uint32_t eventMask);
// Adds to the events Qt's connection already selects on the root window.
void selectRootEvents(std::uint32_t mask);

// Interned once per process, in one round trip.
struct Atoms {
  xcb_atom_t bamfDesktopFile, gtkApplicationId, kdeDesktopFile, manager, netActiveWindow,
      netClientList, netCurrentDesktop, netTray, netTrayColors, netTrayIconSize, netTrayOpcode,
      netTrayOrientation, netTrayPadding, netTrayVisual, netWmDesktop, netWmName, netWmPid,
      netWmState, netWmStateAbove, netWmStateSkipPager, netWmStateSkipTaskbar, netWmStateSticky,
      netWmStrut, netWmStrutPartial, netWmWindowType, netWmWindowTypeDock, utf8String, wmProtocols,
      wmTakeFocus, xembed, xembedInfo;
};
const Atoms& atoms();

// What tray icons need of the server. Negotiated once per process.
struct Extensions {
  bool complete = false;   // composite, damage and xfixes are all there
  bool clientIds = false;  // XRes tells clients' process ids
  std::uint8_t damageNotify = 0;
  std::uint8_t selectionNotify = 0;
};
const Extensions& extensions();

}  // namespace tarnwick::bar::x11
