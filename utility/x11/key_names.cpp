#include "utility/x11/key_names.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <QCoreApplication>
#include <QRegularExpression>
#include <QString>

#include "core/ports/translatable.h"

namespace tarnwick::x11 {

namespace {

struct Name {
  xkb_keysym_t symbol;
  const char* text;
};

// What stands on the keys that most keyboards have.
constexpr Name names[] = {
    {XKB_KEY_Print, translatable("KeyNames", "Print")},
    {XKB_KEY_Scroll_Lock, translatable("KeyNames", "Scroll Lock")},
    {XKB_KEY_Pause, translatable("KeyNames", "Pause")},
    {XKB_KEY_Menu, translatable("KeyNames", "Menu")},
    {XKB_KEY_Help, translatable("KeyNames", "Help")},
    {XKB_KEY_XF86AudioPlay, translatable("KeyNames", "Play")},
    {XKB_KEY_XF86AudioStop, translatable("KeyNames", "Stop")},
    {XKB_KEY_XF86AudioPrev, translatable("KeyNames", "Previous Track")},
    {XKB_KEY_XF86AudioNext, translatable("KeyNames", "Next Track")},
    {XKB_KEY_XF86AudioMute, translatable("KeyNames", "Mute")},
    {XKB_KEY_XF86AudioLowerVolume, translatable("KeyNames", "Volume Down")},
    {XKB_KEY_XF86AudioRaiseVolume, translatable("KeyNames", "Volume Up")},
    {XKB_KEY_XF86MonBrightnessDown, translatable("KeyNames", "Brightness Down")},
    {XKB_KEY_XF86MonBrightnessUp, translatable("KeyNames", "Brightness Up")},
    {XKB_KEY_XF86Calculator, translatable("KeyNames", "Calculator")},
    {XKB_KEY_XF86Mail, translatable("KeyNames", "Mail")},
    {XKB_KEY_XF86HomePage, translatable("KeyNames", "Home Page")},
    {XKB_KEY_XF86Search, translatable("KeyNames", "Search")},
};

// "XF86AudioMicMute" and "Hangul_Hanja" as words.
QString words(QString symbol) {
  static const QRegularExpression wordBegins("(?<=[a-z])(?=[A-Z])");
  if (symbol.startsWith("XF86")) symbol.remove(0, 4);
  return symbol.replace('_', ' ').replace(wordBegins, " ");
}

}  // namespace

std::optional<std::string> keyName(std::uint32_t keySymbol) {
  if (keySymbol == XKB_KEY_NoSymbol || keySymbol == XKB_KEY_VoidSymbol) return std::nullopt;
  for (const Name& name : names) {
    if (name.symbol == keySymbol) {
      return QCoreApplication::translate("KeyNames", name.text).toStdString();
    }
  }
  char text[64] = {};
  if (xkb_keysym_get_name(keySymbol, text, sizeof text) <= 0) return std::nullopt;
  return words(QString::fromUtf8(text)).toStdString();
}

}  // namespace tarnwick::x11
