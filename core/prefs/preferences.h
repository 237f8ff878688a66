#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/ports/defaults_store.h"
#include "core/ports/translatable.h"
#include "core/prefs/app_group.h"

namespace tarnwick {

// What stands for a hidden application in the panel.
enum class PanelIconStyle : std::uint8_t {
  appIcon,     // the application's icon
  statusIcon,  // the captured picture of its status item, when there is one
};

// How the handle is drawn.
enum class HandleIconStyle : std::uint8_t {
  mono,   // a template that the bar tints
  color,  // in its own colours
};

template <class Style>
struct StyleInfo {
  Style style;
  const char* rawValue;  // as stored
  const char* label;     // as shown in the settings, in English
};

// All cases, in the order of the settings' pickers.
inline constexpr StyleInfo<PanelIconStyle> panelIconStyles[] = {
    {PanelIconStyle::appIcon, "appIcon", translatable("Preferences", "App icon")},
    {PanelIconStyle::statusIcon, "statusIcon", translatable("Preferences", "Menu bar icon")},
};
inline constexpr StyleInfo<HandleIconStyle> handleIconStyles[] = {
    {HandleIconStyle::mono, "mono", translatable("Preferences", "Black & white")},
    {HandleIconStyle::color, "color", translatable("Preferences", "Color")},
};

// The settings: typed reads and writes straight through to the defaults store, nothing kept. A
// missing or unusable stored value reads as its default.
class Preferences {
 public:
  static constexpr int minimumColumns = 1;
  static constexpr int maximumColumns = 20;
  static constexpr int defaultColumns = 5;

  explicit Preferences(DefaultsStore& defaults) : defaults_(&defaults) {}

  // Bundle identifiers of the applications whose status items are hidden, as stored.
  std::vector<std::string> hiddenBundleIds() const;
  // False when it could not be written; so of the other setters that tell.
  bool setHiddenBundleIds(std::vector<std::string> bundleIds) const;

  // Of the applications whose items may stand left of the boundary because of us, see StowRecord.
  std::vector<std::string> stowedBundleIds() const;
  bool setStowedBundleIds(std::vector<std::string> bundleIds) const;

  // Entries per row of the panel, 1 to 20.
  int panelColumns() const;
  void setPanelColumns(int columns) const;

  PanelIconStyle panelIconStyle() const;
  void setPanelIconStyle(PanelIconStyle style) const;

  HandleIconStyle handleIconStyle() const;
  void setHandleIconStyle(HandleIconStyle style) const;

  // In order of creation. Names are unique and no group is empty.
  std::vector<AppGroup> groups() const;
  bool setGroups(const std::vector<AppGroup>& groups) const;
  // Name of the group that holds the application; absent when none does.
  std::optional<std::string> groupName(const std::string& bundleId) const;
  // Moves the application to the end of the group of that name, trimmed of blanks, making the group
  // when there is none; a blank name takes it out of every group. Groups left empty dissolve.
  bool assign(const std::string& bundleId, const std::string& toGroup) const;

 private:
  DefaultsStore* defaults_;
};

}  // namespace tarnwick
