#include "common/menus/view/menu_style.h"

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

namespace tarnwick {

namespace {

constexpr int separatorInset = 8;  // points
constexpr float lineAlpha = 0.2F;

class MenuStyle : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override {
    if (hint == SH_Menu_Scrollable) return 1;
    if (hint == SH_EtchDisabledText) return 0;  // a second, shifted text on a dark ground
    return QProxyStyle::styleHint(hint, option, widget, returnData);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element == PE_FrameMenu) return;  // drawn with the ground
    if (element != PE_PanelMenu) {
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    const QColor colour = line(option->palette);
    const QRect frame = option->rect;
    painter->fillRect(frame, option->palette.base());
    painter->fillRect(QRect(frame.left(), frame.top(), frame.width(), 1), colour);
    painter->fillRect(QRect(frame.left(), frame.bottom(), frame.width(), 1), colour);
    painter->fillRect(QRect(frame.left(), frame.top() + 1, 1, frame.height() - 2), colour);
    painter->fillRect(QRect(frame.right(), frame.top() + 1, 1, frame.height() - 2), colour);
  }

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || item == nullptr || !item->text.isEmpty() ||
        item->menuItemType != QStyleOptionMenuItem::Separator) {
      return QProxyStyle::drawControl(element, option, painter, widget);
    }
    const QRect place = item->rect;
    painter->fillRect(QRect(place.left() + separatorInset, place.center().y(),
                            place.width() - 2 * separatorInset, 1),
                      line(option->palette));
  }

 private:
  // Seen on a light and on a dark ground.
  static QColor line(const QPalette& palette) {
    QColor colour = palette.color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(lineAlpha);
    return colour;
  }
};

}  // namespace

void useMenuStyle(QMenu& menu) {
  static QPointer<MenuStyle> style;
  if (!style) {
    style = new MenuStyle;
    style->setParent(qApp);
  }
  menu.setStyle(style);
  menu.setToolTipsVisible(true);
}

}  // namespace tarnwick
