#include "common/menus/client/layout_parser.h"

#include <QDBusVariant>
#include <utility>

namespace tarnwick {

namespace {

bool isLayout(const QVariant& value) {
  return value.metaType() == QMetaType::fromType<QDBusArgument>() &&
         value.value<QDBusArgument>().currentSignature() == QLatin1String("(ia{sv}av)");
}

}  // namespace

LayoutParser::LayoutParser(const QVariant& layout) {
  if (isLayout(layout)) enter(layout.value<QDBusArgument>());
}

LayoutParser::~LayoutParser() {
  while (!levels_.empty()) leave();
}

bool LayoutParser::run(QDeadlineTimer deadline) {
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (bad_ || level.argument.atEnd() || count_ >= maximumMenuEntries) {
      leave();
    } else {
      QDBusVariant child;
      level.argument >> child;
      const QVariant value = child.variant();
      const bool tooDeep = levels_.size() > static_cast<std::size_t>(maximumMenuDepth);
      if (!tooDeep && isLayout(value)) enter(value.value<QDBusArgument>());
    }
    if (deadline.hasExpired() && !levels_.empty()) return false;
  }
  return true;
}

std::optional<MenuEntry> LayoutParser::take() {
  return std::exchange(result_, std::nullopt);
}

void LayoutParser::enter(const QDBusArgument& structure) {
  ++count_;
  Level level{structure, {}};
  const QDBusArgument& argument = level.argument;  // the other overloads would write
  argument.beginStructure();
  argument >> level.entry.id;
  if (const std::optional<QVariantMap> properties = readMenuProperties(argument)) {
    for (const auto& [name, value] : properties->asKeyValueRange()) {
      applyMenuProperty(level.entry, name, value);
    }
  } else {
    bad_ = true;
  }
  iconBytes_ += level.entry.iconData.size();
  if (iconBytes_ > maximumMenuIconTotal) {
    iconBytes_ -= level.entry.iconData.size();
    level.entry.iconData.clear();
  }
  argument.beginArray();
  levels_.push_back(std::move(level));
}

void LayoutParser::leave() {
  MenuEntry entry = std::move(levels_.back().entry);
  const QDBusArgument& argument = levels_.back().argument;
  argument.endArray();  // what was begun and not ended leaks
  argument.endStructure();
  levels_.pop_back();
  entry.children.shrink_to_fit();
  if (levels_.empty()) {
    if (!bad_) result_ = std::move(entry);
  } else {
    MenuEntry& parent = levels_.back().entry;
    parent.submenu = true;
    parent.children.push_back(std::move(entry));
  }
}

}  // namespace tarnwick
