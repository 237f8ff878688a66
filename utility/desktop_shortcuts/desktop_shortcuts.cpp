#include "utility/desktop_shortcuts/desktop_shortcuts.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <map>

#include "common/x11/server.h"
#include "core/shortcuts/modifiers.h"
#include "utility/desktop_shortcuts/running_desktop.h"
#include "utility/x11/key_codes.h"

namespace tarnwick::shortcuts {

namespace {

using x11::Reply;

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection,
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray property(xcb_connection_t* connection, xcb_window_t window, const QByteArray& name) {
  constexpr std::uint32_t longest = 1024;  // 32-bit units
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection,
      xcb_get_property(connection, 0, window, atom(connection, name), XCB_ATOM_ANY, 0, longest),
      nullptr));
  if (!reply || xcb_get_property_value_length(reply.get()) <= 0) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          xcb_get_property_value_length(reply.get())};
}

RunningDesktop present() {
  RunningDesktop desktop;
  desktop.names = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':', Qt::SkipEmptyParts);
  xcb_connection_t* const connection = x11::server();
  if (!connection) return desktop;
  const auto root = x11::rootOf(connection);
  const auto check = property(connection, root, "_NET_SUPPORTING_WM_CHECK");
  if (check.size() != sizeof(xcb_window_t)) return desktop;
  xcb_window_t window = XCB_WINDOW_NONE;
  std::copy(check.begin(), check.end(), reinterpret_cast<char*>(&window));
  desktop.windowManager = QString::fromUtf8(property(connection, window, "_NET_WM_NAME"));
  desktop.openboxFile = QString::fromUtf8(property(connection, root, "_OB_CONFIG_FILE"));
  return desktop;
}

// Key codes by the symbols that the present map has on their first two levels.
std::multimap<xcb_keysym_t, xcb_keycode_t> keyMap(xcb_connection_t* connection) {
  const auto* const setup = xcb_get_setup(connection);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const Reply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
      connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr));
  std::multimap<xcb_keysym_t, xcb_keycode_t> codes;
  if (!reply) return codes;
  const auto* const symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  const int width = reply->keysyms_per_keycode;
  for (int i = 0; i < count; ++i) {
    for (int level = 0; level < std::min(width, 2); ++level) {
      const auto symbol = symbols[i * width + level];
      if (symbol) codes.emplace(symbol, static_cast<xcb_keycode_t>(setup->min_keycode + i));
    }
  }
  return codes;
}

xcb_keysym_t symbol(const QString& name) {
  const auto points = name.toUcs4();
  if (points.size() == 1) return xkb_utf32_to_keysym(QChar::toLower(points[0]));
  const auto exact = xkb_keysym_from_name(name.toUtf8().constData(), XKB_KEYSYM_NO_FLAGS);
  if (exact != XKB_KEY_NoSymbol) return exact;
  return xkb_keysym_from_name(name.toUtf8().constData(), XKB_KEYSYM_CASE_INSENSITIVE);
}

// Absent for combinations with a modifier that the core has no name for.
std::optional<std::int64_t> modifiersOf(const Combination& combination,
                                        const x11::ModifierMasks& masks) {
  unsigned bits = combination.modifiers;
  if (bits & Combination::other) return std::nullopt;
  if (bits & Combination::alt) bits |= masks.alt;
  if (bits & Combination::super) bits |= masks.super;
  const auto modifiers = masks.modifiers(static_cast<std::uint16_t>(bits & 0xff));
  if (contains(modifiers, KeyModifiers::unnamed)) return std::nullopt;
  return KeyboardShortcuts::carbon(modifiers);
}

}  // namespace

DesktopShortcuts::DesktopShortcuts(x11::KeyGrabs& grabs) : grabs_(grabs) {
  reader_.setMaxThreadCount(1);
  QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, this, [this] { read(); });
}

DesktopShortcuts::~DesktopShortcuts() {
  stopped_ = true;
  reader_.waitForDone();
}

void DesktopShortcuts::read() {
  again_ = reading_;
  if (reading_) return;
  reading_ = true;
  reader_.start([this, desktop = present()] {
    auto found = std::make_shared<Configuration>(readConfiguration(desktop, stopped_));
    QMetaObject::invokeMethod(
        this,
        [this, found] {
          combinations_ = std::move(found->combinations);
          reading_ = false;
          if (!watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
          if (!found->files.isEmpty()) watcher_.addPaths(found->files);
          if (again_) read();
        },
        Qt::QueuedConnection);
  });
}

std::vector<TakenShortcut> DesktopShortcuts::taken() {
  read();
  std::vector<TakenShortcut> all;
  xcb_connection_t* const connection = x11::server();
  if (!connection || combinations_.empty()) return all;
  const auto codes = keyMap(connection);
  const auto masks = x11::ModifierMasks::present();
  const auto add = [&](int keyCode, std::int64_t modifiers) {
    const auto key = x11::virtualKey(static_cast<xcb_keycode_t>(keyCode));
    if (key) all.push_back({*key, modifiers});
  };
  for (const auto& combination : combinations_) {
    const auto modifiers = modifiersOf(combination, masks);
    if (!modifiers) continue;
    if (combination.keyCode) {
      add(combination.keyCode, *modifiers);
      continue;
    }
    const auto [first, last] = codes.equal_range(symbol(combination.key));
    for (auto code = first; code != last; ++code) add(code->second, *modifiers);
  }
  return all;
}

bool DesktopShortcuts::isTaken(const TakenShortcut& shortcut) {
  return SystemShortcuts::isTaken(shortcut) ||
         grabs_.isTakenElsewhere(static_cast<std::uint32_t>(shortcut.carbonKeyCode),
                                 KeyboardShortcuts::fromCarbon(shortcut.carbonModifiers));
}

}  // namespace tarnwick::shortcuts
