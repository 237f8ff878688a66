#include "core/hiding/separator_item.h"

#include <cstdlib>
#include <utility>

namespace tarnwick {

namespace {

constexpr double handleLength = 24;
constexpr double collapsedLength = 16'000;
constexpr double expandedLength = 2;
constexpr double imageSide = 18;

// A V whose point is at the bottom. `halfWidth` is its width's half, `pointHeight` the height of
// its point above the picture's lower edge.
StrokedPath chevron(double halfWidth, double pointHeight, Color color) {
  constexpr double centre = imageSide * 0.5;
  constexpr double height = imageSide * 0.24;
  const double pointY = imageSide - pointHeight;
  return {{{centre - halfWidth, pointY - height},
           {centre, pointY},
           {centre + halfWidth, pointY - height}},
          imageSide * 0.13,
          color};
}

}  // namespace

SeparatorItem::SeparatorItem(SeparatorRole role, const std::string& autosaveName,
                             StatusBar& statusBar, const Screens& screens,
                             const Preferences& preferences,
                             std::function<void(const ClickEvent&)> onClick)
    : role_(role),
      screens_(screens),
      statusItem_(statusBar.addItem(role == SeparatorRole::handle ? handleLength : expandedLength,
                                    autosaveName)) {
  if (role_ == SeparatorRole::handle) applyHandleStyle(preferences.handleIconStyle());
  statusItem_->setOnClick([onClick = std::move(onClick)](const ClickEvent& event) {
    if ((event.modifierFlags & ModifierFlags::command) == 0) onClick(event);
  });
}

SeparatorItem::~SeparatorItem() {
  // The bar's items belong to the main thread.
  if (std::this_thread::get_id() != mainThread_) std::abort();
}

std::optional<Rect> SeparatorItem::screenFrameTopLeft() const {
  if (screens_.all().empty()) return std::nullopt;
  return statusItem_->frame();
}

void SeparatorItem::setCollapsed(bool collapsed) {
  if (role_ != SeparatorRole::boundary) return;
  statusItem_->setLength(collapsed ? collapsedLength : expandedLength);
}

void SeparatorItem::placeLeftOf(const SeparatorItem& sibling) {
  statusItem_->placeLeftOf(*sibling.statusItem_);
}

void SeparatorItem::applyHandleStyle(HandleIconStyle style) {
  if (role_ == SeparatorRole::handle) statusItem_->setImage(handleImage(style));
}

Drawing SeparatorItem::handleImage(HandleIconStyle style) {
  constexpr double s = imageSide;
  Drawing drawing{{s, s}, style == HandleIconStyle::mono, {}};
  if (style == HandleIconStyle::mono) {
    constexpr double halfWidth = s * 0.62 * 0.5;
    drawing.shapes.push_back(chevron(halfWidth, s * 0.16, {0, 0, 0, 0.45}));
    drawing.shapes.push_back(chevron(halfWidth, s * 0.46, {0, 0, 0, 1}));
  } else {
    constexpr double halfWidth = s * 0.52 * 0.5;
    drawing.shapes.push_back(GradientRoundedRect{
        {0.5, 0.5, s - 1, s - 1}, s * 0.24, {0.30, 0.55, 0.98, 1}, {0.13, 0.32, 0.85, 1}});
    drawing.shapes.push_back(chevron(halfWidth, s * 0.22, {1, 1, 1, 0.5}));
    drawing.shapes.push_back(chevron(halfWidth, s * 0.48, {1, 1, 1, 1}));
  }
  return drawing;
}

}  // namespace tarnwick
