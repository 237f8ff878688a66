// A program with global shortcuts of its own, told by its standard input what to do with them.
// Prints "down NAME" and "up NAME" for what its shortcuts bring, "chose TEXT" for its menu.

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QMenu>
#include <QSocketNotifier>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "common/x11/server.h"
#include "common/x11/xkb.h"
#include "core/shortcuts/character.h"
#include "core/shortcuts/keyboard_shortcuts.h"
#include "utility/desktop_shortcuts/desktop_shortcuts.h"
#include "utility/loop/qt_main_loop.h"
#include "utility/menus/menu_tracking.h"
#include "utility/session/defaults_file.h"
#include "utility/x11/key_grabs.h"
#include "utility/x11/keyboard_changes.h"
#include "utility/x11/xkb_layout.h"

namespace {

using namespace tarnwick;
using namespace KeyboardShortcuts;

void say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

class Probe : public QAbstractNativeEventFilter {
 public:
  Probe() { qApp->installNativeEventFilter(this); }

  // Sends every command round by the X server, so that it comes after the keys typed before it.
  void command(const std::string& line) {
    commands_.push_back(line);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window_.winId());
    message.type = XCB_ATOM_CARDINAL;
    char event[32] = {};
    std::memcpy(event, &message, sizeof message);
    xcb_send_event(x11::server(), 0, message.window, 0, event);
    xcb_flush(x11::server());
  }

  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    const auto* const event = static_cast<const xcb_client_message_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE || commands_.empty() ||
        event->window != window_.winId() || event->type != XCB_ATOM_CARDINAL) {
      return false;
    }
    const std::string line = commands_.front();
    commands_.pop_front();
    run(line);
    return true;
  }

 private:
  void run(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "set") {
      std::string name;
      std::int64_t code = 0, modifiers = 0;
      words >> name >> code >> modifiers;
      setShortcut(Shortcut(code, modifiers), handled(name));
      say(name + (isEnabled(handled(name)) ? " taken" : " not taken"));
    } else if (verb == "disable" || verb == "enable") {
      std::string name;
      words >> name;
      (verb == "disable" ? disable : enable)({handled(name)});
      say(name + (isEnabled(handled(name)) ? " taken" : " not taken"));
    } else if (verb == "prints") {
      std::string text = "prints";
      for (std::uint16_t code = 0; words >> code;) {
        const auto character = layout_.character(code);
        text += ' ' + (character ? KeyboardShortcuts::character(*character).value_or("?")
                                 : layout_.name(code).value_or("none"));
      }
      say(text);
    } else if (verb == "desktop") {
      TakenShortcut shortcut;
      words >> shortcut.carbonKeyCode >> shortcut.carbonModifiers;
      const bool configured = system_.SystemShortcuts::isTaken(shortcut);
      const bool grabbed = hotKeys_.isTakenElsewhere(
          static_cast<std::uint32_t>(shortcut.carbonKeyCode), fromCarbon(shortcut.carbonModifiers));
      say(std::string("desktop") + (configured ? " configured" : "") + (grabbed ? " grabbed" : ""));
    } else if (verb == "stay") {
      // Microseconds that the question keeps the main thread, and how much the desktop binds.
      const auto start = std::chrono::steady_clock::now();
      system_.isTaken({40, 4352});
      const auto length = std::chrono::steady_clock::now() - start;
      say("stay " + std::to_string(length / std::chrono::microseconds(1)) + ' ' +
          std::to_string(system_.taken().size()));
    } else if (verb == "many") {
      std::size_t count = 0;
      words >> count;
      say(registerMany(count));
    } else if (verb == "layout") {
      int number = 0;
      words >> number;
      xcb_xkb_latch_lock_state(x11::server(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                               static_cast<std::uint8_t>(number), 0, 0, 0);
      say("layout");
    } else if (verb == "menu") {
      menu_ = std::make_unique<QMenu>();
      for (const char* entry : {"first", "second", "third"}) {
        menu_->addAction(entry, [entry] { say(std::string("chose ") + entry); });
      }
      menu_->popup({100, 100});
      say("menu");
    }
  }

  // Microseconds that it takes to give handlers to names that have shortcuts, all different.
  std::string registerMany(std::size_t count) {
    std::vector<Name> names;
    for (std::int64_t key = 0; names.size() < count; ++key) {
      names.push_back(Name::fromRawValue("many " + std::to_string(key)));
      // Places of letters and digits, with four sets of modifiers.
      constexpr std::int64_t modifiers[] = {0x1100, 0x900, 0x1800, 0x1900};
      setShortcut(Shortcut(key / 4 % 30, modifiers[key % 4]), names.back());
    }
    const auto start = std::chrono::steady_clock::now();
    for (const Name& name : names) onKeyUp(name, [] {});
    const auto end = std::chrono::steady_clock::now();
    const auto taken =
        std::count_if(names.begin(), names.end(), [](const Name& name) { return isEnabled(name); });
    removeAllHandlers();
    return "many " + std::to_string((end - start) / std::chrono::microseconds(1)) + ' ' +
           std::to_string(taken);
  }

  Name handled(const std::string& name) {
    const Name wanted = Name::fromRawValue(name);
    if (names_.insert(name).second) {
      onKeyDown(wanted, [name] { say("down " + name); });
      onKeyUp(wanted, [name] { say("up " + name); });
    }
    return wanted;
  }

  QtMainLoop loop_;
  desktop::DefaultsFile defaults_;
  NotificationCenter notifications_;
  MenuTracking menuTracking_{notifications_};
  x11::KeyboardChanges changes_;
  x11::KeyGrabs hotKeys_{changes_};
  shortcuts::DesktopShortcuts system_{hotKeys_};
  x11::XkbLayout layout_{changes_};
  std::set<std::string> names_;
  QWidget window_;
  std::deque<std::string> commands_;
  std::unique_ptr<QMenu> menu_;
  Registration module_ = use({loop_, defaults_, hotKeys_, layout_, notifications_});
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  Probe probe;
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QApplication::quit();
    probe.command(line);
  });
  say("ready");
  return QApplication::exec();
}
