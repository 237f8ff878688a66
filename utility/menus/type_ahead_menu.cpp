#include "utility/menus/type_ahead_menu.h"

#include <QAction>
#include <QKeyEvent>
#include <algorithm>

#include "common/look/tool_tip.h"

namespace tarnwick {

namespace {

constexpr quint64 pause = 1000;       // ms after which a word begins anew
constexpr int titleWidth = 480;       // points
constexpr qsizetype shortTitle = 40;  // narrower than that in any font

}  // namespace

// The action's data is the whole title, by which it is found.
void TypeAheadMenu::setTitle(QAction& action, const QString& title) const {
  QString whole = title;
  for (QChar& character : whole) {
    if (character.category() == QChar::Other_Control) character = u' ';  // a tab starts a column
  }
  const QString shown = whole.size() <= shortTitle
                            ? whole
                            : fontMetrics().elidedText(whole, Qt::ElideMiddle, titleWidth);
  action.setData(whole);
  action.setText(QString(shown).replace(u'&', QLatin1String("&&")));
  action.setToolTip(shown == whole ? QString() : wrappedToolTip(whole));
}

void TypeAheadMenu::keyPressEvent(QKeyEvent* event) {
  // By the time of typing, however long it took to get here.
  const bool goesOn = !typed_.isEmpty() && event->timestamp() - lastKey_ < pause;
  const QString text = event->text();
  const bool isText =
      !text.isEmpty() && text.front().isPrint() &&
      !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
      (goesOn || !text.front().isSpace());  // a space alone chooses
  if (!isText) {
    typed_.clear();
    return QMenu::keyPressEvent(event);
  }
  typed_ = goesOn ? typed_ + text : text;
  lastKey_ = event->timestamp();
  if (QAction* const found = match()) goTo(found);
  event->accept();
}

// Made active, a submenu's entry would open at once: it is stepped on from the entry before.
void TypeAheadMenu::goTo(QAction* action) {
  if (action->menu() == nullptr) return setActiveAction(action);
  const QList<QAction*> all = actions();
  qsizetype before = all.indexOf(action);
  do {
    --before;
  } while (before >= 0 &&
           (all[before]->menu() || all[before]->isSeparator() || !all[before]->isEnabled()));
  setActiveAction(before < 0 ? nullptr : all[before]);
  for (qsizetype i = before; i < all.size() && activeAction() != action; ++i) {
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QMenu::keyPressEvent(&down);
  }
}

QAction* TypeAheadMenu::match() const {
  const QList<QAction*> all = actions();
  const bool again = std::all_of(typed_.begin(), typed_.end(),
                                 [&](QChar typed) { return typed == typed_.front(); });
  const QString wanted = again ? typed_.left(1) : typed_;
  const qsizetype active = all.indexOf(activeAction());
  const qsizetype from = active < 0 ? 0 : active + (again ? 1 : 0);
  for (qsizetype i = 0; i < all.size(); ++i) {
    QAction* const action = all[(from + i) % all.size()];
    if (action->isEnabled() && !action->isSeparator() &&
        action->data().toString().startsWith(wanted, Qt::CaseInsensitive)) {
      return action;
    }
  }
  return nullptr;
}

}  // namespace tarnwick
