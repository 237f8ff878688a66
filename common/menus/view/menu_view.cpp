#include "common/menus/view/menu_view.h"

#include <QActionEvent>
#include <QActionGroup>
#include <QHash>
#include <QIcon>
#include <algorithm>
#include <utility>

#include "common/look/picture_file.h"
#include "common/look/tool_tip.h"
#include "common/menus/view/menu_style.h"

namespace tarnwick {

namespace {

constexpr int iconSliceMs = 4;
constexpr int iconSide = 16;     // points
constexpr int labelWidth = 480;  // points
constexpr qsizetype shortLabel = 40;
constexpr qsizetype groupTitle = 20;  // characters of an entry's title

QIcon iconOf(const QString& name, const QByteArray& data, double scale) {
  if (!name.isEmpty() && !name.contains(u'/')) {
    const QIcon themed = QIcon::fromTheme(name);
    if (!themed.isNull()) return themed;
  }
  const int side = static_cast<int>(iconSide * scale);
  QImage image = name.startsWith(u'/') ? readPictureFile(name, side) : QImage();
  if (image.isNull() && !data.isEmpty()) image = readPicture(data, side);
  if (image.isNull()) return {};
  image.setDevicePixelRatio(scale);
  return QPixmap::fromImage(std::move(image));
}

}  // namespace

class MenuView::EntryAction : public QAction {
 public:
  using QAction::QAction;

  int entryId = 0;
  MenuToggle toggle = MenuToggle::none;
  QString iconName;
  QByteArray iconData;
};

MenuView::MenuView(int id, QWidget* parent, std::size_t from, std::size_t to)
    : QMenu(parent), id_(id), from_(from), to_(to) {
  useMenuStyle(*this);
  iconTimer_.callOnTimeout(this, &MenuView::loadIcons);
}

void MenuView::setEntries(const std::vector<MenuEntry>& children) {
  std::vector<std::size_t> shown = shownEntries(children);
  shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(std::min(shown.size(), to_)),
              shown.end());
  shown.erase(shown.begin(),
              shown.begin() + static_cast<std::ptrdiff_t>(std::min(shown.size(), from_)));
  if (shown.empty() && !entries_.empty()) return;

  // QMenu lays itself out again with every change of an action while it is visible.
  const bool visible = testAttribute(Qt::WA_WState_Visible);
  setAttribute(Qt::WA_WState_Visible, false);
  if (!shown.empty()) delete std::exchange(waiting_, nullptr);
  if (shown.size() <= groupSize) {
    apply(children, shown);
    setGroups(children, shown, shown.size(), 0);
  } else if (isContinuation()) {
    apply(children, {});
    setGroups(children, shown, 0, groupSize);
  } else {
    apply(children, {shown.begin(), shown.begin() + groupSize});
    setGroups(children, shown, groupSize, toTheEnd);
  }
  setAttribute(Qt::WA_WState_Visible, visible);
  if (visible) layOutOnce();
  if (!iconless_.empty()) iconTimer_.start();
}

void MenuView::showWaiting() {
  if (!isEmpty()) return;
  waiting_ = addAction(tr("Waiting for the application"));
  waiting_->setEnabled(false);
}

void MenuView::apply(const std::vector<MenuEntry>& children,
                     const std::vector<std::size_t>& shown) {
  QHash<int, EntryAction*> known;
  const auto discard = [](EntryAction* action) {
    if (action->menu() != nullptr) action->menu()->deleteLater();
    delete action;
  };
  // Of several entries under one id only the first can be told apart.
  std::erase_if(entries_, [&](EntryAction* action) {
    const bool again = known.contains(action->entryId);
    again ? discard(action) : void(known.insert(action->entryId, action));
    return again;
  });
  const bool allNew = std::none_of(shown.begin(), shown.end(),
                                   [&](std::size_t i) { return known.contains(children[i].id); });
  if (allNew && entries_.size() == shown.size()) {
    // The same menu under new ids, as some owners send every few seconds: the highlight stays.
    known.clear();
    for (std::size_t i = 0; i < shown.size(); ++i) {
      EntryAction* const action = entries_[i];
      action->entryId = children[shown[i]].id;
      if (known.contains(action->entryId)) {
        discard(action);
        continue;
      }
      known.insert(action->entryId, action);
      auto* const submenu = static_cast<MenuView*>(action->menu());
      if (submenu == nullptr) continue;
      const int before = submenu->id();
      submenu->setId(action->entryId);
      emit renumbered(before, action->entryId);
    }
  }

  std::vector<EntryAction*> entries;
  entries.reserve(shown.size());
  for (const std::size_t i : shown) {
    EntryAction* action = known.take(children[i].id);
    if (action != nullptr && action->isSeparator() != children[i].separator) {
      delete std::exchange(action, nullptr);
    }
    if (action == nullptr) {
      action = new EntryAction(this);
      action->entryId = children[i].id;
      connect(action, &QAction::triggered, this, [this, action] { emit chosen(action->entryId); });
    }
    apply(*action, children[i]);
    entries.push_back(action);
  }
  for (EntryAction* const action : std::as_const(known)) discard(action);

  // Only what is not in its place moves: a submenu that is open stays open.
  QList<QAction*> placed = actions();
  qsizetype at = 0;
  for (EntryAction* const action : entries) {
    if (at < placed.size() && placed[at] == action) {
      ++at;
      continue;
    }
    const qsizetype elsewhere = placed.indexOf(action, at);
    if (elsewhere >= 0) {
      removeAction(action);
      placed.removeAt(elsewhere);
    }
    insertAction(at < placed.size() ? placed[at] : nullptr, action);
    placed.insert(at++, action);
  }
  entries_ = std::move(entries);
}

void MenuView::apply(EntryAction& action, const MenuEntry& entry) {
  action.setSeparator(entry.separator);
  if (entry.separator) return;
  const QString label = entry.label.size() <= shortLabel
                            ? entry.label
                            : fontMetrics().elidedText(entry.label, Qt::ElideMiddle, labelWidth,
                                                       Qt::TextShowMnemonic);
  action.setToolTip(label == entry.label ? QString() : wrappedToolTip(entry.title()));
  action.setText(entry.shortcut.isEmpty() ? label : label + u'\t' + entry.shortcut);
  action.setEnabled(entry.enabled && !entry.heading);
  if (entry.heading) {
    QFont bold = font();
    bold.setBold(true);
    action.setFont(bold);
  }
  if (action.toggle != entry.toggle) {
    action.toggle = entry.toggle;
    delete action.actionGroup();
    // A radio mark comes with an exclusive group; the owner alone says which one is on.
    if (entry.toggle == MenuToggle::radio) (new QActionGroup(&action))->addAction(&action);
    action.setCheckable(entry.toggle != MenuToggle::none);
  }
  action.setChecked(entry.toggleState == MenuToggleState::on);

  if (entry.submenu && action.menu() == nullptr) {
    auto* const submenu = new MenuView(entry.id, this);
    action.setMenu(submenu);
    emit viewAdded(submenu);
  } else if (!entry.submenu && action.menu() != nullptr) {
    action.menu()->deleteLater();
    action.setMenu(static_cast<QMenu*>(nullptr));
  }

  if (action.iconName == entry.iconName && action.iconData == entry.iconData) return;
  action.iconName = entry.iconName;
  action.iconData = entry.iconData;
  if (entry.iconName.isEmpty() && entry.iconData.isEmpty()) {
    action.setIcon({});
  } else {
    iconless_.emplace_back(&action);
  }
}

// Groups of `size` entries for those from the `from`th of `shown` on; one for all when `size` is
// toTheEnd.
void MenuView::setGroups(const std::vector<MenuEntry>& children,
                         const std::vector<std::size_t>& shown, std::size_t from,
                         std::size_t size) {
  std::size_t count = 0;
  for (; from < shown.size(); ++count) {
    const std::size_t to = size < shown.size() - from ? from + size : shown.size();
    if (count == groups_.size()) {
      auto* const group =
          new MenuView(id_, this, from_ + from, size == toTheEnd ? to_ : from_ + from + size);
      groups_.push_back(addMenu(group));
      emit viewAdded(group);
    }
    const auto title = [&](std::size_t i) {
      return children[shown[i]].title().left(groupTitle).replace(u'&', QLatin1String("&&"));
    };
    groups_[count]->setText(size == toTheEnd
                                ? tr("More")
                                : QStringLiteral("%1 \u2026 %2").arg(title(from), title(to - 1)));
    from = to;
  }
  for (; groups_.size() > count; groups_.pop_back()) {
    groups_.back()->menu()->deleteLater();
    delete groups_.back();
  }
}

void MenuView::setId(int id) {
  id_ = id;
  for (QAction* const group : groups_) static_cast<MenuView*>(group->menu())->setId(id);
}

void MenuView::loadIcons() {
  QElapsedTimer spent;
  spent.start();
  const bool visible = testAttribute(Qt::WA_WState_Visible);
  setAttribute(Qt::WA_WState_Visible, false);
  while (!iconless_.empty() && spent.elapsed() < iconSliceMs) {
    const QPointer<EntryAction> action = iconless_.back();
    iconless_.pop_back();
    if (action) action->setIcon(iconOf(action->iconName, action->iconData, devicePixelRatioF()));
  }
  setAttribute(Qt::WA_WState_Visible, visible);
  if (!iconless_.empty()) return;
  iconTimer_.stop();
  if (visible) layOutOnce();
}

void MenuView::layOutOnce() {
  if (actions().isEmpty()) return;
  QActionEvent event(QEvent::ActionChanged, actions().constFirst());
  actionEvent(&event);
  // It may have grown beyond the monitor's edge.
  const QRect screenArea = screen()->availableGeometry();
  QRect place = geometry();
  place.moveRight(std::min(place.right(), screenArea.right()));
  place.moveBottom(std::min(place.bottom(), screenArea.bottom()));
  place.moveLeft(std::max(place.left(), screenArea.left()));
  place.moveTop(std::max(place.top(), screenArea.top()));
  if (place != geometry()) setGeometry(place);
}

}  // namespace tarnwick
