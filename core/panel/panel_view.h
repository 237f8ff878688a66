#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/base/geometry.h"
#include "core/panel/panel_section.h"
#include "core/ports/translatable.h"

namespace tarnwick {

// The panel's content, replaced whole whenever something changes. Rendered by the PanelWindow with
// the measures below.
struct PanelView {
  std::vector<PanelSection> sections;
  int columns = 5;           // 1 to 20
  bool statusStyle = false;  // pictures of status items are asked for
  // Called once for each press on an entry: bundle identifier, whether it was the right button, and
  // the entry's centre x on the screen, absent when it is in no window.
  std::function<void(const std::string&, bool, std::optional<double>)> onTap;
};

// Measures of the panel in points and its fixed text.
struct PanelMetrics {
  static constexpr double margin = 6;    // transparent, around the background
  static constexpr double padding = 12;  // between the background's edge and the content
  static constexpr double cornerRadius = 12;
  static constexpr double sectionSpacing = 10;
  static constexpr double headerSpacing = 6;  // between a section's title and its grid
  static constexpr double cellSpacing = 8;    // between columns and between rows
  static constexpr Size cell{34, 30};
  static constexpr Size largestPicture{34, 28};
  static constexpr double iconSide = 26;
  static constexpr double iconSideAmongPictures = 20;
  static constexpr const char* emptyText =
      translatable("PanelView", "No hidden apps yet.\nRight-click the chevron to add some.");

  // A section with fewer entries than the panel has columns is only as wide as its entries.
  static int columnsOf(const PanelSection& section, int columns) {
    return std::max(1, std::min(columns, static_cast<int>(section.entries.size())));
  }

  // A captured picture is shrunk to fit, keeping its proportions, and never enlarged.
  static Size pictureSize(Size picture) {
    double scale = std::min(1.0, largestPicture.height / std::max(picture.height, 1.0));
    if (picture.width > 1) scale = std::min(scale, largestPicture.width / picture.width);
    return {picture.width * scale, picture.height * scale};
  }
};

}  // namespace tarnwick
