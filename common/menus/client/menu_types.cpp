#include "common/menus/client/menu_types.h"

#include <QDBusVariant>
#include <QKeySequence>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <limits>

namespace tarnwick {

namespace {

constexpr int maximumShortcutParts = 8;

std::optional<QString> text(const QVariant& value) {
  if (value.metaType().id() != QMetaType::QString) return std::nullopt;
  return value.toString().left(maximumMenuText);
}

bool flag(const QVariant& value, bool otherwise) {
  return value.metaType().id() == QMetaType::Bool ? value.toBool() : otherwise;
}

QString shortcutText(const QStringList& parts) {
  QStringList keys;
  for (const QString& part : parts) {
    if (part == QLatin1String("Control")) {
      keys << QStringLiteral("Ctrl");
    } else if (part == QLatin1String("Super")) {
      keys << QStringLiteral("Meta");
    } else if (part == QLatin1String("plus")) {
      keys << QStringLiteral("+");
    } else if (part == QLatin1String("minus")) {
      keys << QStringLiteral("-");
    } else {
      keys << part.left(20);
    }
  }
  return QKeySequence(keys.join(u'+'), QKeySequence::PortableText)
      .toString(QKeySequence::NativeText);
}

// The first of a list of key lists, from the wire (aas) or as a plain list.
QStringList firstShortcut(const QVariant& value) {
  if (value.metaType().id() == QMetaType::QStringList) return value.toStringList();
  if (value.metaType() != QMetaType::fromType<QDBusArgument>()) return {};
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("aas")) return {};
  QStringList parts;
  argument.beginArray();
  if (!argument.atEnd()) {
    argument.beginArray();
    while (!argument.atEnd() && parts.size() < maximumShortcutParts) {
      QString part;
      argument >> part;
      parts << part;
    }
    argument.endArray();
  }
  argument.endArray();
  return parts;
}

MenuToggle toggleType(const QString& name) {
  if (name == QLatin1String("checkmark")) return MenuToggle::checkmark;
  if (name == QLatin1String("radio")) return MenuToggle::radio;
  return MenuToggle::none;
}

MenuToggleState toggleState(const QVariant& value) {
  if (value.metaType().id() != QMetaType::Int) return MenuToggleState::indeterminate;
  if (value.toInt() == 0) return MenuToggleState::off;
  return value.toInt() == 1 ? MenuToggleState::on : MenuToggleState::indeterminate;
}

}  // namespace

QString MenuEntry::title() const {
  QString plain;
  plain.reserve(label.size());
  for (qsizetype i = 0; i < label.size(); ++i) {
    if (label[i] == u'&' && ++i == label.size()) break;
    plain += label[i];
  }
  return plain;
}

void applyMenuProperty(MenuEntry& entry, const QString& name, const QVariant& value) {
  const bool isDefault = !value.isValid();
  const std::optional<QString> string = isDefault ? QString() : text(value);
  if (name == QLatin1String("label")) {
    if (string) entry.label = menuLabel(*string);
  } else if (name == QLatin1String("type")) {
    if (string) entry.separator = *string == QLatin1String("separator");
  } else if (name == QLatin1String("enabled")) {
    entry.enabled = flag(value, true);
  } else if (name == QLatin1String("visible")) {
    entry.visible = flag(value, true);
  } else if (name == QLatin1String("icon-name")) {
    if (string) entry.iconName = *string;
  } else if (name == QLatin1String("icon-data")) {
    const bool usable = value.metaType().id() == QMetaType::QByteArray &&
                        value.toByteArray().size() <= maximumMenuIconBytes;
    entry.iconData = usable ? value.toByteArray() : QByteArray();
  } else if (name == QLatin1String("shortcut")) {
    entry.shortcut = shortcutText(firstShortcut(value));
  } else if (name == QLatin1String("toggle-type")) {
    if (string) entry.toggle = toggleType(*string);
  } else if (name == QLatin1String("toggle-state")) {
    entry.toggleState = toggleState(value);
  } else if (name == QLatin1String("children-display")) {
    if (string) entry.submenu = *string == QLatin1String("submenu") || !entry.children.empty();
  } else if (name == QLatin1String("x-kde-title")) {
    entry.heading = flag(value, false);
  }
}

QString menuLabel(const QString& wire) {
  const QString text = wire.left(maximumMenuText);
  QString label;
  label.reserve(text.size());
  bool marked = false;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar character = text[i];
    const QChar next = i + 1 < text.size() ? text[i + 1] : QChar();
    if (character == u'&') {
      label += QLatin1String("&&");
    } else if (character.category() == QChar::Other_Control) {
      label += u' ';  // a tab would start the shortcut column
    } else if (character != u'_') {
      label += character;
    } else if (next == u'_') {
      label += u'_';
      ++i;
    } else if (next.isNull()) {
      label += u'_';
    } else if (!marked && !next.isSpace() && next != u'&') {
      label += u'&';
      marked = true;
    }
  }
  return label;
}

std::vector<std::size_t> shownEntries(const std::vector<MenuEntry>& entries) {
  std::vector<std::size_t> shown;
  constexpr std::size_t none = static_cast<std::size_t>(-1);
  std::size_t separator = none;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!entries[i].visible) continue;
    if (entries[i].separator) {
      if (!shown.empty()) separator = i;
      continue;
    }
    if (separator != none) shown.push_back(separator);
    separator = none;
    shown.push_back(i);
  }
  return shown;
}

MenuEntry* findMenuEntry(MenuEntry& root, int id) {
  if (root.id == id) return &root;
  for (MenuEntry& child : root.children) {
    if (MenuEntry* const found = findMenuEntry(child, id)) return found;
  }
  return nullptr;
}

namespace {

void keepIdsUnique(std::vector<MenuEntry>& entries, QSet<int>& seen, int& nextOwn) {
  std::erase_if(entries, [&](MenuEntry& entry) {
    while (entry.separator && seen.contains(entry.id)) entry.id = nextOwn++;
    const auto before = seen.size();
    seen.insert(entry.id);
    return seen.size() == before;
  });
  for (MenuEntry& entry : entries) keepIdsUnique(entry.children, seen, nextOwn);
}

}  // namespace

void keepIdsUnique(MenuEntry& root) {
  QSet<int> seen{root.id};
  int nextOwn = std::numeric_limits<int>::min();
  keepIdsUnique(root.children, seen, nextOwn);
}

void indexMenuEntries(const MenuEntry& root, QHash<int, const MenuEntry*>& index) {
  if (!index.contains(root.id)) index.insert(root.id, &root);
  for (const MenuEntry& child : root.children) indexMenuEntries(child, index);
}

MenuExtent menuExtent(const MenuEntry& root) {
  MenuExtent extent;
  extent.iconBytes = root.iconData.size();
  for (const MenuEntry& child : root.children) {
    const MenuExtent below = menuExtent(child);
    extent.entries += below.entries;
    extent.depth = std::max(extent.depth, below.depth + 1);
    extent.iconBytes += below.iconBytes;
  }
  return extent;
}

int menuLevel(const MenuEntry& root, int id) {
  if (root.id == id) return 0;
  for (const MenuEntry& child : root.children) {
    const int level = menuLevel(child, id);
    if (level >= 0) return level + 1;
  }
  return -1;
}

std::optional<QVariantMap> readMenuProperties(const QDBusArgument& argument) {
  QVariantMap properties;
  int count = 0;
  argument.beginMap();
  while (!argument.atEnd() && ++count <= maximumMenuProperties) {
    QString name;
    QDBusVariant value;
    argument.beginMapEntry();
    argument >> name >> value;
    argument.endMapEntry();
    properties.insert(name, value.variant());
  }
  argument.endMap();
  if (count > maximumMenuProperties) return std::nullopt;
  return properties;
}

}  // namespace tarnwick
