#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "core/ports/drawing.h"
#include "core/ports/pointer_events.h"
#include "core/ports/screens.h"
#include "core/ports/status_bar.h"
#include "core/prefs/preferences.h"

namespace tarnwick {

enum class SeparatorRole : std::uint8_t {
  handle,    // the visible chevron that is clicked
  boundary,  // the invisible item whose length hides what is left of it
};

// One of the two status items of our own. Owned by the controller; removed from the bar with its
// destruction.
class SeparatorItem {
 public:
  // `onClick` is called for every click but a Command-click, on release.
  SeparatorItem(SeparatorRole role, const std::string& autosaveName, StatusBar& statusBar,
                const Screens& screens, const Preferences& preferences,
                std::function<void(const ClickEvent&)> onClick);
  SeparatorItem(const SeparatorItem&) = delete;
  SeparatorItem& operator=(const SeparatorItem&) = delete;
  ~SeparatorItem();

  SeparatorRole role() const { return role_; }

  // Where it stands now, in the space of MenuBarItemInfo::frame. Absent when the bar does not tell
  // and when there is no screen.
  std::optional<Rect> screenFrameTopLeft() const;

  // Boundary: 16,000 points long when true, 2 when false. Handle: no effect.
  void setCollapsed(bool collapsed);
  // Moves it immediately left of the other one.
  void placeLeftOf(const SeparatorItem& sibling);
  // Handle: drawn in that style. Boundary: no effect.
  void applyHandleStyle(HandleIconStyle style);

  // 18 x 18 points; a template in the mono style.
  static Drawing handleImage(HandleIconStyle style);

 private:
  const SeparatorRole role_;
  const Screens& screens_;
  const std::thread::id mainThread_ = std::this_thread::get_id();
  std::unique_ptr<StatusItem> statusItem_;
};

}  // namespace tarnwick
