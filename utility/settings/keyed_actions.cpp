#include "utility/settings/keyed_actions.h"

#include <QAction>
#include <QMenu>
#include <map>
#include <optional>

#include "core/shortcuts/special_key.h"

namespace tarnwick {

namespace {

using KeyboardShortcuts::SpecialKey;

std::optional<SpecialKey> specialKey(int key) {
  using K = SpecialKey;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F20) {
    return static_cast<SpecialKey>(static_cast<int>(K::f1) + key - Qt::Key_F1);
  }
  static const std::map<int, SpecialKey> keys = {
      {Qt::Key_Return, K::return_}, {Qt::Key_Backspace, K::delete_},
      {Qt::Key_Escape, K::escape},  {Qt::Key_Delete, K::deleteForward},
      {Qt::Key_Help, K::help},      {Qt::Key_Tab, K::tab},
      {Qt::Key_Home, K::home},      {Qt::Key_End, K::end},
      {Qt::Key_PageUp, K::pageUp},  {Qt::Key_PageDown, K::pageDown},
      {Qt::Key_Up, K::upArrow},     {Qt::Key_Down, K::downArrow},
      {Qt::Key_Left, K::leftArrow}, {Qt::Key_Right, K::rightArrow},
      {Qt::Key_Space, K::space},
  };
  const auto found = keys.find(key);
  return found != keys.end() ? std::optional(found->second) : std::nullopt;
}

// Empty for keys that no shortcut can have.
std::string keyEquivalent(int key) {
  if (const auto special = specialKey(key)) {
    return appKitMenuItemKeyEquivalent(*special).value_or(std::string());
  }
  if (key >= Qt::Key_Escape) return {};  // from there on, keys that print nothing
  const auto printed = static_cast<char32_t>(key);
  return QString::fromUcs4(&printed, 1).toLower().toStdString();
}

KeyModifiers modifierMask(Qt::KeyboardModifiers held) {
  KeyModifiers mask = KeyModifiers::none;
  if (held & Qt::ControlModifier) mask = mask | KeyModifiers::control;
  if (held & Qt::AltModifier) mask = mask | KeyModifiers::option;
  if (held & Qt::ShiftModifier) mask = mask | KeyModifiers::shift;
  if (held & Qt::MetaModifier) mask = mask | KeyModifiers::command;
  return mask;
}

std::string titleOf(const QAction& action) {
  return action.iconText().remove(u'…').toStdString();  // which has no mnemonics
}

}  // namespace

KeyedMenu keyedMenu(const QList<QAction*>& actions) {
  KeyedMenu menu;
  for (const QAction* const action : actions) {
    KeyedMenuItem item{titleOf(*action), {}, KeyModifiers::none, {}, {}};
    for (const QKeySequence& sequence : action->shortcuts()) {
      if (sequence.count() != 1) continue;
      item.keyEquivalent = keyEquivalent(sequence[0].key());
      item.modifierMask = modifierMask(sequence[0].keyboardModifiers());
      menu.push_back(item);
    }
    if (action->menu()) {
      menu.push_back(
          {item.title, {}, KeyModifiers::none, {}, keyedMenu(action->menu()->actions())});
    }
  }
  return menu;
}

}  // namespace tarnwick
