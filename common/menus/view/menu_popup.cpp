#include "common/menus/view/menu_popup.h"

#include <malloc.h>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "common/menus/view/menu_view.h"

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2s;
constexpr auto updateDelay = 16ms;
constexpr std::size_t trimmedEntries = 500;  // menus from this length on leave memory to give back

}  // namespace

MenuPopup::MenuPopup(const QString& busName, const QString& path, QObject* parent)
    : QObject(parent), client_(busName, path) {
  for (QTimer* const timer : {&deadline_, &updates_}) timer->setSingleShot(true);
  deadline_.callOnTimeout(this, &MenuPopup::finish);
  updates_.callOnTimeout(this, [this] {
    if (view_) {
      refill(view_);
      std::erase_if(views_, [](const auto& view) { return !view; });
      for (const auto& view : std::vector(views_)) {
        if (view && !view->isEmpty()) refill(view);
      }
    } else if (!over_) {
      show();
    }
  });
  connect(&client_, &MenuClient::layoutChanged, this, [this] {
    if (!updates_.isActive()) updates_.start(updateDelay);
  });
}

MenuPopup::~MenuPopup() {
  over_ = true;
  if (view_) {
    view_->disconnect(this);
    view_->hide();
    view_->deleteLater();
  }
}

void MenuPopup::open(const QRect& anchor) {
  anchor_ = anchor;
  deadline_.start(patience);
  opened_.push_back(0);
  client_.open(0, this, [this](MenuClient::Failure failure) {
    if (over_) return;
    if (failure == MenuClient::Failure::absent) {
      opened_.clear();
      emit failed();
      finish();
    } else if (failure == MenuClient::Failure::none) {
      show();
    }
  });
}

void MenuPopup::dismiss() {
  if (view_ && view_->isVisible()) {
    view_->close();
  } else {
    finish();
  }
}

bool MenuPopup::isShown() const {
  return view_ && view_->isVisible();
}

// Shows the menu if there is something in it by now: menus filled late come bare at first.
void MenuPopup::show() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (view_ || over_ || screen == nullptr || client_.root() == nullptr) return;
  if (shownEntries(client_.root()->children).empty()) return;
  deadline_.stop();
  view_ = new MenuView(0, nullptr);
  adopt(view_);
  refill(view_);
  connect(view_, &QMenu::aboutToHide, this, [this] {
    // A chosen entry is told only after its menu has hidden.
    QMetaObject::invokeMethod(this, &MenuPopup::finish, Qt::QueuedConnection);
  });
  const QRect monitor = screen->geometry();
  view_->popup({std::clamp(anchor_.left(), monitor.left(), monitor.right()),
                std::clamp(anchor_.bottom() + 1, monitor.top(), monitor.bottom())});
  grab_.hold(view_, [this] { dismiss(); });
}

void MenuPopup::adopt(MenuView* view) {
  openingPress_.watch(*view);
  view->installEventFilter(this);  // asked first: it takes the time of every event
  connect(view, &MenuView::viewAdded, this, [this](MenuView* added) {
    views_.emplace_back(added);
    adopt(added);
    connect(added, &QMenu::aboutToShow, this, [this, added] { onAboutToShow(added); });
    connect(added, &QMenu::aboutToHide, this, [this, added] { onAboutToHide(added); });
  });
  connect(view, &MenuView::renumbered, this,
          [this](int from, int to) { std::replace(opened_.begin(), opened_.end(), from, to); });
  connect(view, &MenuView::chosen, this, &MenuPopup::choose);
  connect(view, &QMenu::hovered, this, [this, view](QAction* action) { onHovered(view, action); });
}

void MenuPopup::refill(MenuView* view) {
  const MenuEntry* const entry = client_.entry(view->id());
  if (entry != nullptr) view->setEntries(entry->children);
}

// Submenus are asked for as soon as the pointer or the keyboard is on their entry, so that they
// are filled when they come up.
void MenuPopup::onHovered(MenuView* view, QAction* action) {
  auto* const submenu = qobject_cast<MenuView*>(action->menu());
  if (action->parent() != view) return;  // a submenu's signal passed up
  closeUnshown();
  if (submenu != nullptr && !submenu->isContinuation()) openSubmenu(submenu->id());
}

void MenuPopup::onAboutToShow(MenuView* view) {
  if (!view->isContinuation()) openSubmenu(view->id());
  refill(view);
  view->showWaiting();
}

void MenuPopup::onAboutToHide(MenuView* view) {
  if (view->isContinuation()) return;
  QMetaObject::invokeMethod(this, &MenuPopup::closeUnshown, Qt::QueuedConnection);
}

void MenuPopup::openSubmenu(int id) {
  if (std::find(opened_.begin(), opened_.end(), id) != opened_.end()) return;
  opened_.push_back(id);
  client_.open(id, this, nullptr);
}

void MenuPopup::closeUnshown() {
  if (over_) return;
  for (std::size_t i = opened_.size(); i-- > 1;) {
    const int id = opened_[i];
    const bool shown = std::any_of(views_.begin(), views_.end(), [id](const auto& view) {
      return view && view->id() == id && view->isVisible();
    });
    if (shown) continue;
    client_.close(id, time_);
    opened_.erase(opened_.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

void MenuPopup::choose(int id) {
  if (over_) return;
  client_.click(id, std::exchange(opened_, {}), time_);
  finish();
}

void MenuPopup::finish() {
  if (over_) return;
  over_ = true;
  for (QTimer* const timer : {&deadline_, &updates_}) timer->stop();
  for (auto id = opened_.rbegin(); id != opened_.rend(); ++id) client_.close(*id, time_);
  opened_.clear();
  if (view_) view_->deleteLater();
  const MenuEntry* const root = client_.root();
  const bool large = root != nullptr && root->children.size() > trimmedEntries;
  const auto end = [this, large] {
    if (large) connect(this, &QObject::destroyed, [] { ::malloc_trim(0); });
    deleteLater();
  };
  if (client_.isFinishing()) {
    connect(&client_, &MenuClient::finished, this, end);
  } else {
    end();
  }
}

bool MenuPopup::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress: {
      const auto* const press = static_cast<QMouseEvent*>(event);
      if (view_ && anchor_.contains(press->globalPosition().toPoint())) {
        view_->setAttribute(Qt::WA_NoMouseReplay);
      }
      time_ = static_cast<quint32>(press->timestamp());
      break;
    }
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      time_ = static_cast<quint32>(static_cast<QInputEvent*>(event)->timestamp());
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace tarnwick
