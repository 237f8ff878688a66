#include "utility/menus/qt_menus.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

#include "common/menus/view/menu_style.h"
#include "common/menus/view/opening_press.h"
#include "common/menus/view/popup_grab.h"
#include "utility/menus/type_ahead_menu.h"

namespace tarnwick {

// A menu on the screen and what is waited for.
struct QtMenus::Tracking {
  std::unique_ptr<TypeAheadMenu> menu = std::make_unique<TypeAheadMenu>();
  PopupGrab grab;
  OpeningPress openingPress;
  MenuOutcome outcome;
  std::function<void(const MenuOutcome&)> callback;
  Registration outsidePresses;
  Registration gone;
};

namespace {

// The represented object of the first item that has one.
const AXElement* firstElement(const Menu& menu) {
  for (const MenuItem& item : menu) {
    if (item.representedObject) return &*item.representedObject;
    if (const AXElement* const below = firstElement(item.submenu)) return below;
  }
  return nullptr;
}

}  // namespace

void QtMenus::fill(TypeAheadMenu& into, const Menu& menu,
                   const std::shared_ptr<Tracking>& tracking) {
  useMenuStyle(into);
  tracking->openingPress.watch(into);
  for (const MenuItem& item : menu) {
    if (item.separator) {
      into.addSeparator();
      continue;
    }
    auto* const submenu = item.submenu.empty() ? nullptr : new TypeAheadMenu(&into);
    QAction* const action = submenu ? into.addMenu(submenu) : into.addAction(QString());
    into.setTitle(*action, QString::fromStdString(item.title));
    action->setEnabled(item.enabled);
    if (submenu) {
      fill(*submenu, item.submenu, tracking);
      continue;
    }
    QObject::connect(action, &QAction::triggered, action,
                     [weak = std::weak_ptr(tracking), representedObject = item.representedObject] {
                       if (const auto open = weak.lock()) {
                         open->outcome = {true, representedObject};
                       }
                     });
  }
}

// Who waits for the outcome holds the menu: forgotten, both go.
QtMenus::~QtMenus() {
  if (const auto open = open_.lock()) const auto waiting = std::exchange(open->callback, nullptr);
}

// Closes a menu that stands for nothing any more.
void QtMenus::takeDown(const std::weak_ptr<Tracking>& tracking) {
  const auto open = tracking.lock();
  if (!open) return;
  open->outcome.itemChosen = true;
  open->menu->close();
}

Registration QtMenus::popUp(const Menu& menu, Point location,
                            std::function<void(const MenuOutcome&)> callback) {
  takeDown(open_);
  const auto tracking = std::make_shared<Tracking>();
  open_ = tracking;
  tracking->callback = std::move(callback);
  fill(*tracking->menu, menu, tracking);

  // The choice is told only after the menu has hidden.
  QObject::connect(tracking->menu.get(), &QMenu::aboutToHide, tracking->menu.get(),
                   [this, weak = std::weak_ptr(tracking)] {
                     loop_.post([weak] {
                       const auto open = weak.lock();
                       if (!open || !open->callback) return;
                       std::exchange(open->callback, nullptr)(open->outcome);
                     });
                   });
  const auto dismiss = [weak = std::weak_ptr(tracking)] {
    if (const auto open = weak.lock()) open->menu->close();
  };
  tracking->outsidePresses = monitors_.addGlobalPressMonitor(dismiss);
  if (const AXElement* const element = firstElement(menu)) {
    tracking->gone = goneWatch_(*element, [weak = std::weak_ptr(tracking)] { takeDown(weak); });
  }

  const QScreen* primary = QGuiApplication::primaryScreen();
  const QPoint origin = primary ? primary->geometry().topLeft() : QPoint();
  tracking->menu->popup(origin + QPoint(qRound(location.x), qRound(location.y)));
  tracking->grab.hold(tracking->menu.get(), dismiss);
  return Registration([tracking = std::shared_ptr(tracking)]() mutable {
    tracking->callback = nullptr;
    tracking->menu->hide();
    tracking->menu.release()->deleteLater();  // this may be one of its own events
    tracking.reset();
  });
}

}  // namespace tarnwick
