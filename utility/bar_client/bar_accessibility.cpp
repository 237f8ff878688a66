#include "utility/bar_client/bar_accessibility.h"

#include <string>
#include <utility>

#include "common/barprotocol/bar_protocol.h"

namespace tarnwick {

namespace {

using Kind = AXElement::Kind;

// An application without items has no extras menu bar.
std::optional<AXValue> applicationAttribute(const BarPicture& bar, std::int32_t pid,
                                            std::string_view name) {
  if (name != ax::extrasMenuBar || bar.itemsOf(pid).empty()) return std::nullopt;
  return AXElement{Kind::extrasMenuBar, pid};
}

std::optional<AXValue> menuBarAttribute(const BarPicture& bar, std::int32_t pid,
                                        std::string_view name) {
  if (name != ax::children) return std::nullopt;
  std::vector<AXElement> children;
  for (const auto id : bar.itemsOf(pid)) children.push_back({Kind::statusItem, pid, id});
  if (children.empty()) return std::nullopt;
  return children;
}

std::optional<AXValue> itemAttribute(const BarItem& item, std::string_view name) {
  if (name == ax::position) return Point{item.frame.x, item.frame.y};
  if (name == ax::size) return Size{item.frame.width, item.frame.height};
  if (name == ax::title) return item.title.toStdString();
  return std::nullopt;
}

}  // namespace

BarAccessibility::BarAccessibility(BarConnection& bar, BarSnapshots& snapshots)
    : bar_(bar), snapshots_(snapshots) {
  // An item can be withdrawn by an owner that lives on.
  QObject::connect(&menus_, &ItemMenus::itemsChanged, &menus_, [this] {
    bar_.call(QStringLiteral("Items"), {}, &menus_, [this](const QDBusMessage& reply) {
      if (const auto items = parseBarItems(reply)) menus_.keepOnly(*items);
    });
  });
  QObject::connect(
      &menus_, &ItemMenus::menuless, &menus_,
      [this](std::uint64_t item, std::optional<QPointF> place) {
        bar_.send(QStringLiteral("PressAt"), {qulonglong{item}, place.value_or(QPointF())});
      });
}

bool BarAccessibility::isProcessTrusted() {
  return bar_.hasAccess(barservice::accessibility);
}

bool BarAccessibility::isProcessTrusted(bool prompt) {
  const bool trusted = isProcessTrusted();
  if (!trusted && prompt) bar_.requestAccess(barservice::accessibility);
  return trusted;
}

AXElement BarAccessibility::applicationElement(std::int32_t pid) {
  return {Kind::application, pid};
}

// An item or entry has the menu that it has open as its first child, and that menu its entries.
std::optional<AXValue> BarAccessibility::menuAttribute(const AXElement& element,
                                                       std::string_view name) const {
  const MenuEntry* const entry = menus_.entry(element.item, element.entry);
  if (!entry) return std::nullopt;
  if (element.kind == Kind::menuEntry && name == ax::title) {
    return entry->separator ? std::string() : entry->title().toStdString();
  }
  if (element.kind == Kind::menuEntry && name == ax::enabled) {
    return entry->enabled && !entry->separator && !entry->heading;
  }
  if (name != ax::children) return std::nullopt;
  std::vector<AXElement> children;
  if (element.kind == Kind::menu) {
    for (const std::size_t index : shownEntries(entry->children)) {
      children.push_back({Kind::menuEntry, element.pid, element.item, entry->children[index].id});
    }
  } else if (!entry->children.empty()) {
    children.push_back({Kind::menu, element.pid, element.item, element.entry});
  }
  return children;
}

std::optional<AXValue> BarAccessibility::attribute(const AXElement& element,
                                                   std::string_view name) {
  const bool ofMenu = element.kind == Kind::menu || element.kind == Kind::menuEntry;
  if (ofMenu || (element.kind == Kind::statusItem && name == ax::children)) {
    return menuAttribute(element, name);
  }
  const auto bar = snapshots_.present();
  switch (element.kind) {
    case Kind::application:
      return applicationAttribute(*bar, element.pid, name);
    case Kind::extrasMenuBar:
      return menuBarAttribute(*bar, element.pid, name);
    case Kind::statusItem: {
      const BarItem* item = bar->find(element.item);
      return item ? itemAttribute(*item, name) : std::nullopt;
    }
    case Kind::menu:
    case Kind::menuEntry:
      return std::nullopt;
  }
  return std::nullopt;
}

void BarAccessibility::perform(const AXElement& element, std::string_view action) {
  if (element.kind == Kind::menuEntry && action == ax::press) {
    menus_.choose(element.item, element.entry);
    return;
  }
  if (element.kind != Kind::statusItem) return;
  if (action == ax::cancel && menus_.isOpen(element.item)) {
    menus_.cancel(element.item);
    return;
  }
  if (action == ax::press) {
    const auto bar = snapshots_.present();
    const BarItem* const item = bar->find(element.item);
    const auto suggested = std::exchange(place_, std::nullopt);
    const auto place = suggested && suggested->item == element.item
                           ? std::optional(suggested->point)
                           : std::nullopt;
    if (!item) return;
    if (!item->menuPath.isEmpty()) {
      menus_.open(*item, place);
    } else {
      menus_.closeAll();
      if (place) {
        bar_.send(QStringLiteral("PressAt"), {qulonglong{element.item}, *place});
      } else {
        bar_.send(QStringLiteral("Press"), {qulonglong{element.item}});
      }
    }
  } else if (action == ax::cancel) {
    bar_.send(QStringLiteral("Cancel"), {qulonglong{element.item}});
  }
}

Registration BarAccessibility::watchMenu(const AXElement& entry, std::function<void()> ended) {
  return menus_.watch(entry.item, std::move(ended));
}

void BarAccessibility::suggestPlace(const AXElement& element, Point place) {
  place_ = {element.item, QPointF(place.x, place.y)};
}

void BarAccessibility::setMessagingTimeout(const AXElement&, float) {}

}  // namespace tarnwick
