#include "adapters/qt/qt_menus.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <utility>

namespace tarnwick {

namespace {

// A menu on the screen and what is waited for.
struct Tracking {
  std::unique_ptr<QMenu> menu;
  MenuOutcome outcome;
  std::function<void(const MenuOutcome&)> callback;
  Registration outsidePresses;
};

void fill(QMenu& into, const Menu& menu, const std::weak_ptr<Tracking>& tracking) {
  for (const MenuItem& item : menu) {
    if (item.separator) {
      into.addSeparator();
      continue;
    }
    QString title = QString::fromStdString(item.title);
    title.replace(QLatin1Char('&'), QLatin1String("&&"));  // titles have no access-key marks
    if (!item.submenu.empty()) {
      QMenu* const submenu = into.addMenu(title);
      submenu->menuAction()->setEnabled(item.enabled);
      fill(*submenu, item.submenu, tracking);
      continue;
    }
    QAction* const action = into.addAction(title);
    action->setEnabled(item.enabled);
    QObject::connect(action, &QAction::triggered, action,
                     [tracking, representedObject = item.representedObject] {
                       if (const auto open = tracking.lock()) {
                         open->outcome = {true, representedObject};
                       }
                     });
  }
}

}  // namespace

Registration QtMenus::popUp(const Menu& menu, Point location,
                            std::function<void(const MenuOutcome&)> callback) {
  const auto tracking = std::make_shared<Tracking>();
  tracking->menu = std::make_unique<QMenu>();
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
  tracking->outsidePresses = monitors_.addGlobalPressMonitor([weak = std::weak_ptr(tracking)] {
    if (const auto open = weak.lock()) open->menu->close();
  });

  const QScreen* primary = QGuiApplication::primaryScreen();
  const QPoint origin = primary ? primary->geometry().topLeft() : QPoint();
  tracking->menu->popup(origin + QPoint(qRound(location.x), qRound(location.y)));
  return Registration([tracking = std::shared_ptr(tracking)]() mutable {
    tracking->callback = nullptr;
    tracking->menu.release()->deleteLater();  // this may be one of its own events
    tracking.reset();
  });
}

}  // namespace tarnwick
