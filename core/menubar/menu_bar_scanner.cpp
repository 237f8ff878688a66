#include "core/menubar/menu_bar_scanner.h"

namespace tarnwick {

namespace {

// Owners of items that belong to the system; those are never listed, hidden or moved.
constexpr std::string_view systemPrefix = "com.apple.";

template <class T>
std::optional<T> read(Accessibility& accessibility, const AXElement& element,
                      std::string_view name) {
  auto value = accessibility.attribute(element, name);
  if (!value || !std::holds_alternative<T>(*value)) return std::nullopt;
  return std::get<T>(std::move(*value));
}

}  // namespace

std::vector<MenuBarItemInfo> MenuBarScanner::scan(const std::optional<std::string>& only) const {
  if (!accessibility_.isProcessTrusted()) return {};
  const auto snapshot = accessibility_.takeSnapshot();
  const std::string ownIdentifier = application_.bundleIdentifier();
  std::vector<MenuBarItemInfo> items;
  for (const RunningApplication& application : workspace_.runningApplications()) {
    if (!application.bundleIdentifier) continue;
    const std::string& bundleId = *application.bundleIdentifier;
    if (bundleId == ownIdentifier || bundleId.starts_with(systemPrefix)) continue;
    if (only && *only != bundleId) continue;
    for (const AXElement& item : statusItems(application.processIdentifier)) {
      const auto itemFrame = readFrame(item);
      if (!itemFrame) continue;
      items.push_back({bundleId, application.localizedName.value_or(bundleId),
                       application.processIdentifier, item, *itemFrame, application.icon});
    }
  }
  return items;
}

std::optional<Rect> MenuBarScanner::frame(const AXElement& of) const {
  const auto snapshot = accessibility_.takeSnapshot();  // both reads of one moment
  return readFrame(of);
}

std::optional<Rect> MenuBarScanner::readFrame(const AXElement& of) const {
  const auto position = read<Point>(accessibility_, of, ax::position);
  if (!position) return std::nullopt;
  const auto size = read<Size>(accessibility_, of, ax::size);
  if (!size) return std::nullopt;
  return Rect{position->x, position->y, size->width, size->height};
}

std::vector<AXElement> MenuBarScanner::statusItems(std::int32_t pid) const {
  const auto root = accessibility_.applicationElement(pid);
  const auto menuBar = read<AXElement>(accessibility_, root, ax::extrasMenuBar);
  if (!menuBar) return {};
  return read<std::vector<AXElement>>(accessibility_, *menuBar, ax::children)
      .value_or(std::vector<AXElement>{});
}

}  // namespace tarnwick
