#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/base/geometry.h"

namespace tarnwick {

// The address of one node in the tree of other applications' interface elements. It stays valid as
// a value when the node is gone; reads through it then fail.
struct AXElement {
  enum class Kind : std::uint8_t { application, extrasMenuBar, statusItem, menu, menuEntry };

  Kind kind = Kind::application;
  std::int32_t pid = 0;    // owning process
  std::uint64_t item = 0;  // status item, for statusItem and what lies below it
  std::int32_t entry =
      0;  // menu entry, for menuEntry and for the menu it opens; 0 is the item's own
  bool operator==(const AXElement&) const = default;
};

namespace ax {
inline constexpr std::string_view extrasMenuBar = "AXExtrasMenuBar";
inline constexpr std::string_view children = "AXChildren";
inline constexpr std::string_view position = "AXPosition";
inline constexpr std::string_view size = "AXSize";
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view enabled = "AXEnabled";
inline constexpr std::string_view press = "AXPress";
inline constexpr std::string_view cancel = "AXCancel";
}  // namespace ax

// What a read that succeeded delivers; monostate is "no value".
using AXValue =
    std::variant<std::monostate, bool, std::string, Point, Size, AXElement, std::vector<AXElement>>;

// Reading and pressing other applications' status items and menus.
class Accessibility {
 public:
  // While one lives, reads of applications, status items, our own ones included, and their frames
  // are answered from one picture of the desktop, and so are presses of items. It was taken in one
  // round trip when the first was made; further ones share it. Without one every read asks afresh.
  class Snapshot {
   public:
    virtual ~Snapshot() = default;
  };

  virtual ~Accessibility() = default;

  // Whether this process may read and press other applications' items. Costs no round trip.
  virtual bool isProcessTrusted() = 0;
  // The same; when it may not and `prompt` is set, the user is asked. Does not wait for the answer.
  virtual bool isProcessTrusted(bool prompt) = 0;

  [[nodiscard]] virtual std::unique_ptr<Snapshot> takeSnapshot() = 0;

  virtual AXElement applicationElement(std::int32_t pid) = 0;

  // Absent when the read fails: no such node, no such attribute, no permission, no answer in time.
  virtual std::optional<AXValue> attribute(const AXElement& element, std::string_view name) = 0;

  // Where on the screen what the next press of the element opens is best seen, if its owner shows
  // that itself: the top-left corner. Without it owners choose by where the element stands.
  virtual void suggestPlace(const AXElement& element, Point place) = 0;

  // Fire and forget: returns at once or after the element's time-out at the latest.
  virtual void perform(const AXElement& element, std::string_view action) = 0;

  // Seconds a request to this one element may take.
  virtual void setMessagingTimeout(const AXElement& element, float seconds) = 0;
};

}  // namespace tarnwick
