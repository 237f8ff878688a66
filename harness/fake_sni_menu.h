#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace fake {

struct MenuNode {
  int id = 0;
  QVariantMap properties;
  QList<MenuNode> children;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const MenuNode& node) {
  argument.beginStructure();
  argument << node.id << node.properties;
  argument.beginArray(QMetaType::fromType<QDBusVariant>());
  for (const MenuNode& child : node.children) {
    argument << QDBusVariant(QVariant::fromValue(child));
  }
  argument.endArray();
  argument.endStructure();
  return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, MenuNode&) {
  return argument;
}

// What ItemsPropertiesUpdated carries of one entry: properties with their values, or names of
// removed ones.
template <class Properties>
struct Changed {
  int id = 0;
  Properties properties;
};
using MenuUpdate = Changed<QVariantMap>;
using MenuRemoval = Changed<QStringList>;

template <class Properties>
QDBusArgument& operator<<(QDBusArgument& argument, const Changed<Properties>& changed) {
  argument.beginStructure();
  argument << changed.id << changed.properties;
  argument.endStructure();
  return argument;
}

template <class Properties>
const QDBusArgument& operator>>(const QDBusArgument& argument, Changed<Properties>&) {
  return argument;
}

struct MenuOptions {
  int entries = 7;
  int depth = 1;      // levels of submenus below the fourth entry
  bool lazy = false;  // submenus are empty until they are about to be shown
  bool lazyRoot = false;
  QString aboutToShow = QStringLiteral("false");  // as `--help` lists
  bool silent = false;
  int slowMs = 0;
  int fillsAfterMs = 0;  // from the first AboutToShow on; the menu is empty before
};

// The menu a fake item offers, and what was done with it.
class Menu {
 public:
  explicit Menu(MenuOptions options) : options_(std::move(options)) {}

  const MenuOptions& options() const { return options_; }
  // New ids for everything.
  void renumber() { base_ += 100'000; }
  MenuUpdate setLabel(int id, const QString& label) {
    labels_[id] = label;
    return {base_ + id, {{QStringLiteral("label"), label}}};
  }
  void setAboutToShow(int id) { shown_ << id - (id == 0 ? 0 : base_); }

  MenuNode layout(int parent) const {
    const int local = parent == 0 ? 0 : parent - base_;
    return local == 0 ? root() : submenu(local, options_.depth - local / 1'000'000);
  }

 private:
  static constexpr int levelStep = 1'000'000;  // ids of one level of submenus

  MenuNode entry(int id, const QVariantMap& properties) const {
    QVariantMap now = properties;
    if (labels_.contains(id)) now[QStringLiteral("label")] = labels_[id];
    return {base_ + id, now, {}};
  }

  bool isFilled(int id, bool lazy) const { return !lazy || shown_.contains(id); }

  MenuNode root() const {
    MenuNode node{0, {{QStringLiteral("children-display"), QStringLiteral("submenu")}}, {}};
    if (!isFilled(0, options_.lazyRoot)) return node;
    for (int i = 1; i <= options_.entries; ++i) node.children << standardEntry(i);
    return node;
  }

  MenuNode standardEntry(int i) const {
    const auto key = [](const char* text) { return QString::fromLatin1(text); };
    const QString label = key("label");
    switch (i) {
      case 1:
        return entry(i, {{label, key("_Open & show__it")}});
      case 2:
        return entry(i, {{label, key("_Check")},
                         {key("toggle-type"), key("checkmark")},
                         {key("toggle-state"), 1}});
      case 3:
        return entry(i, {{key("type"), key("separator")}});
      case 4:
        return submenu(4, options_.depth);
      case 5:
        return entry(i, {{label, key("Disabled")}, {key("enabled"), false}});
      case 6:
        return entry(i, {{label, key("Icon")}, {key("icon-name"), key("folder")}});
      case 7:
        return entry(i, {{label, key("_Quit")}});
      default:
        return entry(i, {{label, key("Entry %1").arg(i)}});
    }
  }

  // A submenu entry with three entries and, down to `depth`, a further submenu.
  MenuNode submenu(int id, int depth) const {
    MenuNode node = entry(id, {{QStringLiteral("label"), QStringLiteral("_Submenu %1").arg(id)},
                               {QStringLiteral("children-display"), QStringLiteral("submenu")}});
    if (!isFilled(id, options_.lazy)) return node;
    const int next = id < levelStep ? levelStep : id + levelStep;
    if (depth > 1) node.children << submenu(next, depth - 1);
    for (int i = 1; i <= 3; ++i) {
      node.children << entry(next + i,
                             {{QStringLiteral("label"), QStringLiteral("Inner %1").arg(next + i)}});
    }
    return node;
  }

  MenuOptions options_;
  QList<int> shown_;
  QHash<int, QString> labels_;  // given later
  int base_ = 0;
};

}  // namespace fake

Q_DECLARE_METATYPE(fake::MenuNode)
