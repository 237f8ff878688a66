#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>
#include <QWindow>
#include <utility>

#include "bar/window/bar_window.h"
#include "bar/window/tool_tip_text.h"

namespace tarnwick::bar {

std::optional<ItemId> BarWindow::itemAt(QPointF at) const {
  return board_.row().itemAt({at.x(), at.y()});
}

void BarWindow::mousePressEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  QToolTip::hideText();
  const bool super = event->modifiers().testFlag(Qt::MetaModifier);
  if (event->button() == Qt::LeftButton) {
    leftButton(Board::Phase::press, *event);
    if (!super && board_.holdingHand() == Board::Hand::user) setPressed(itemAt(at));
  } else if (const auto id = itemAt(at);
             id && !super && board_.holdingHand() != Board::Hand::user) {
    otherPress_.emplace(event->button(), *id);
    setPressed(id);
  }
}

void BarWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void BarWindow::mouseMoveEvent(QMouseEvent* event) {
  if (board_.holdingHand() == Board::Hand::user) {
    // A release that went to somebody else's grab.
    const bool lost = !event->buttons().testFlag(Qt::LeftButton);
    leftButton(lost ? Board::Phase::cancel : Board::Phase::drag, *event);
    if (lost) setPressed({});
  }
  setHovered(rect().contains(event->position().toPoint()) ? itemAt(event->position())
                                                          : std::nullopt);
}

void BarWindow::mouseReleaseEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  if (event->button() == Qt::LeftButton) {
    if (!otherPress_) setPressed({});
    leftButton(Board::Phase::release, *event);
  } else if (otherPress_ && otherPress_->first == event->button()) {
    const ItemId id = std::exchange(otherPress_, std::nullopt)->second;
    setPressed({});
    Item* const item = board_.item(id);
    if (item && itemAt(at) == id && !event->modifiers().testFlag(Qt::MetaModifier)) {
      item->clicked(event->button(), event->modifiers(), at, board_.anchor(id));
    }
  }
  setHovered(rect().contains(at.toPoint()) ? itemAt(at) : std::nullopt);
}

void BarWindow::leftButton(Board::Phase phase, const QMouseEvent& event) {
  board_.leftButton(Board::Hand::user, phase, event.position(), fromQtModifiers(event.modifiers()));
  followDrag();
}

// The keyboard is ours only while an item is in the user's hand, for Escape.
void BarWindow::followDrag() {
  const bool dragging =
      board_.holdingHand() == Board::Hand::user && board_.pointer().draggedItem().has_value();
  if (dragging == keyboardGrabbed_) return;
  keyboardGrabbed_ = dragging;
  if (dragging) {
    grabKeyboard();
  } else {
    releaseKeyboard();
  }
}

void BarWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || !keyboardGrabbed_) return QWidget::keyPressEvent(event);
  letGo();
}

void BarWindow::letGo() {
  board_.leftButton(Board::Hand::user, Board::Phase::cancel, {}, 0);
  setPressed({});
  followDrag();
}

// The release may never come here: a menu that opens takes the pointer, and so may another window.
bool BarWindow::eventFilter(QObject* watched, QEvent* event) {
  if (board_.holdingHand() != Board::Hand::user) return false;
  bool lost = false;
  if (event->type() == QEvent::Show) {
    const auto* const widget = qobject_cast<QWidget*>(watched);
    lost = widget && widget->windowType() == Qt::Popup;
  } else if (event->type() == QEvent::MouseButtonRelease) {
    const auto* const window = qobject_cast<QWindow*>(watched);
    lost = window && window != windowHandle() &&
           static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  }
  if (lost) letGo();
  return false;
}

void BarWindow::wheelEvent(QWheelEvent* event) {
  const auto id = itemAt(event->position());
  Item* const item = id ? board_.item(*id) : nullptr;
  if (item && !event->angleDelta().isNull()) item->scrolled(event->angleDelta());
}

void BarWindow::leaveEvent(QEvent*) {
  setHovered({});
}

bool BarWindow::event(QEvent* event) {
  if (event->type() == QEvent::Close && event->spontaneous()) {
    // A window manager's way to ask; the bar ends with its process.
    event->ignore();
    return true;
  }
  if (event->type() == QEvent::ToolTip) {
    showToolTip(static_cast<QHelpEvent*>(event)->pos());
    return true;
  }
  return QWidget::event(event);
}

void BarWindow::showToolTip(const QPoint& at) {
  const auto id = itemAt(at);
  const Item* const item = id ? board_.item(*id) : nullptr;
  const QString text =
      item && !board_.pointer().draggedItem() ? toolTipMarkup(item->toolTip()) : QString();
  if (text.isEmpty()) return QToolTip::hideText();
  const QRectF cell = cellOf(*id).intersected(QRectF(rect()));
  QToolTip::showText(mapToGlobal(QPoint(qRound(cell.left()), height())), text, this,
                     cell.toAlignedRect());
}

void BarWindow::setHovered(std::optional<ItemId> id) {
  if (id == hovered_) return;
  for (const auto& changed : {std::exchange(hovered_, id), id}) {
    if (changed) updateItem(*changed);
  }
}

void BarWindow::setPressed(std::optional<ItemId> id) {
  if (id == pressed_) return;
  for (const auto& changed : {std::exchange(pressed_, id), id}) {
    if (changed) updateItem(*changed);
  }
}

}  // namespace tarnwick::bar
