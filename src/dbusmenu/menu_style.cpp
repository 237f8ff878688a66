#include "dbusmenu/menu_style.h"

#include <QApplication>
#include <QFontMetrics>
#include <QMenu>
#include <QPointer>
#include <QProxyStyle>

namespace tarnwick {

namespace {

constexpr int maximumWidth = 480;  // points
constexpr qsizetype shortText = 40;

class MenuStyle : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override {
    if (hint == SH_Menu_Scrollable) return 1;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
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
}

QString menuText(const QMenu& menu, const QString& title) {
  QString text = title;
  if (text.size() > shortText) {
    text = menu.fontMetrics().elidedText(text, Qt::ElideMiddle, maximumWidth);
  }
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) character = u' ';  // a tab starts a column
  }
  return text.replace(u'&', QLatin1String("&&"));
}

}  // namespace tarnwick
