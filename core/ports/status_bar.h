#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "common/base/geometry.h"
#include "common/base/registration.h"
#include "core/ports/drawing.h"

namespace tarnwick {

enum class ClickType : std::uint8_t { leftMouseUp, rightMouseUp, other };

// A click on a status item of our own, delivered on release. A default one is an empty event.
struct ClickEvent {
  ClickType type = ClickType::other;
  std::uint32_t modifierFlags = 0;  // ModifierFlags bits
  std::optional<Point> location;    // where the pointer was
};

// One status item of our own in the desktop's bar. Dropping it removes it from the bar. It survives
// the bar: when a bar comes back the item is put into it again as it was.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  // Takes effect at once; the bar lays out all items again.
  virtual void setLength(double points) = 0;
  virtual void setImage(const Drawing& image) = 0;
  // Moves this item immediately left of another one of ours: before any later setLength() of this
  // item, or when the user lets go of an item that is being dragged. No effect while one of them is
  // not in the bar.
  virtual void placeLeftOf(const StatusItem& sibling) = 0;
  // Left and right clicks, each once, on release.
  virtual void setOnClick(std::function<void(const ClickEvent&)> callback) = 0;
  // Asked afresh, or from the Accessibility::Snapshot that lives. Absent when there is no bar or it
  // does not tell.
  virtual std::optional<Rect> frame() const = 0;
};

class StatusBar {
 public:
  virtual ~StatusBar() = default;

  // Puts an item into the bar: at the place remembered under its autosave name, else left of all
  // items already there. The user cannot remove it.
  [[nodiscard]] virtual std::unique_ptr<StatusItem> addItem(double length,
                                                            const std::string& autosaveName) = 0;

  // Called whenever the bar has gone.
  virtual Registration onVanished(std::function<void()> callback) = 0;
  // Called whenever all our items have come into the bar, in whatever order: some time after they
  // were added, and again when a bar has come back.
  virtual Registration onItemsPlaced(std::function<void()> callback) = 0;
};

}  // namespace tarnwick
