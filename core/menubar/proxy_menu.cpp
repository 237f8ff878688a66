#include "core/menubar/proxy_menu.h"

#include <utility>

namespace tarnwick {

namespace {

constexpr int deepestSubmenuRead = 2;

std::vector<AXElement> children(Accessibility& accessibility, const AXElement& of) {
  auto value = accessibility.attribute(of, ax::children);
  if (!value || !std::holds_alternative<std::vector<AXElement>>(*value)) return {};
  return std::get<std::vector<AXElement>>(std::move(*value));
}

template <class T>
T read(Accessibility& accessibility, const AXElement& of, std::string_view name, T fallback) {
  auto value = accessibility.attribute(of, name);
  if (!value || !std::holds_alternative<T>(*value)) return fallback;
  return std::get<T>(std::move(*value));
}

}  // namespace

std::vector<ProxyMenuEntry> readMenuEntries(Accessibility& accessibility, const AXElement& of,
                                            int depth) {
  const auto menus = children(accessibility, of);
  if (menus.empty()) return {};
  std::vector<ProxyMenuEntry> entries;
  for (const AXElement& element : children(accessibility, menus.front())) {
    ProxyMenuEntry& entry = entries.emplace_back();
    entry.title = read(accessibility, element, ax::title, std::string());
    entry.enabled = read(accessibility, element, ax::enabled, true);
    entry.element = element;
    if (depth < deepestSubmenuRead) {
      entry.children = readMenuEntries(accessibility, element, depth + 1);
    }
  }
  return entries;
}

Menu buildMenu(const std::vector<ProxyMenuEntry>& entries) {
  Menu menu;
  menu.reserve(entries.size());
  for (const ProxyMenuEntry& entry : entries) {
    MenuItem& item = menu.emplace_back();
    if (entry.title.empty() && !entry.enabled && entry.children.empty()) {
      item.separator = true;
    } else {
      item.title = entry.title;
      item.enabled = entry.enabled;
      if (entry.children.empty()) {
        item.representedObject = entry.element;
      } else {
        item.submenu = buildMenu(entry.children);
      }
    }
  }
  return menu;
}

}  // namespace tarnwick
