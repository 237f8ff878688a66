#include "utility/x11/client_windows.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "common/x11/server.h"

namespace tarnwick::x11 {

namespace {

constexpr std::uint32_t mostWindows = 1000;
constexpr std::size_t mostOfOne = 16;      // windows of one process
constexpr std::uint32_t longestText = 64;  // in units of four bytes

enum Name : std::size_t { clientList, wmPid, gtkId, kdeFile, bamfFile, nameCount };
constexpr std::array<std::string_view, nameCount> names = {
    "_NET_CLIENT_LIST", "_NET_WM_PID", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
    "_BAMF_DESKTOP_FILE"};

std::array<xcb_atom_t, nameCount> internAtoms(xcb_connection_t* connection) {
  std::array<xcb_intern_atom_cookie_t, nameCount> cookies{};
  for (std::size_t i = 0; i < nameCount; ++i) {
    cookies[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(names[i].size()),
                                 names[i].data());
  }
  std::array<xcb_atom_t, nameCount> atoms{};
  for (std::size_t i = 0; i < nameCount; ++i) {
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookies[i], nullptr));
    if (reply) atoms[i] = reply->atom;
  }
  return atoms;
}

// A property that was asked for; its answer is waited for when it is taken.
class Asked {
 public:
  Asked(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, std::uint32_t length)
      : connection_(connection),
        cookie_(
            xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, length)) {}

  std::vector<std::uint32_t> numbers() const {
    const auto reply = take();
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
  }

  std::string text() const {
    const auto reply = take();
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }

 private:
  Reply<xcb_get_property_reply_t> take() const {
    return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(connection_, cookie_, nullptr));
  }

  xcb_connection_t* connection_;
  xcb_get_property_cookie_t cookie_;
};

// What is asked of one window.
struct WindowRead {
  Asked pid, machine, gtk, kde, bamf, windowClass;

  desktop::WindowHints hints() const {
    desktop::WindowHints hints;
    for (const Asked* id : {&gtk, &kde, &bamf}) {
      auto text = id->text();
      if (hints.applicationId.empty()) hints.applicationId = std::move(text);
    }
    // WM_CLASS: instance and class, each ended by a zero byte.
    const std::string both = windowClass.text();
    if (const auto middle = both.find('\0'); middle != both.npos) {
      hints.windowInstance = both.substr(0, middle);
      hints.windowClass = both.substr(middle + 1, both.find('\0', middle + 1) - middle - 1);
    }
    return hints;
  }
};

}  // namespace

ClientWindows::ClientWindows(std::function<void()> changed) : changed_(std::move(changed)) {
  qApp->installNativeEventFilter(this);
}

ClientWindows::~ClientWindows() {
  if (qApp) qApp->removeNativeEventFilter(this);
}

// Qt listens to changes of the root window's properties.
bool ClientWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
  const auto* const change = static_cast<const xcb_property_notify_event_t*>(message);
  // As long as nobody has asked there is nothing to forget.
  if (change->atom == clientList_ && std::exchange(current_, false)) changed_();
  return false;
}

std::vector<desktop::WindowHints> ClientWindows::hints(std::int32_t pid) {
  read();
  const auto found = windows_.find(pid);
  return found == windows_.end() ? std::vector<desktop::WindowHints>() : found->second;
}

std::set<std::int32_t> ClientWindows::processes() {
  read();
  std::set<std::int32_t> pids;
  for (const auto& window : windows_) pids.insert(window.first);
  return pids;
}

void ClientWindows::read() {
  xcb_connection_t* const connection = server();
  if (current_ || !connection) return;
  current_ = true;
  windows_.clear();
  static const auto atoms = internAtoms(connection);
  clientList_ = atoms[clientList];
  const auto ask = [connection](xcb_window_t window, xcb_atom_t name, std::uint32_t length) {
    return Asked(connection, window, name, length);
  };
  std::vector<WindowRead> reads;
  for (const auto window : ask(rootOf(connection), clientList_, mostWindows).numbers()) {
    reads.push_back(
        {ask(window, atoms[wmPid], 1), ask(window, XCB_ATOM_WM_CLIENT_MACHINE, longestText),
         ask(window, atoms[gtkId], longestText), ask(window, atoms[kdeFile], longestText),
         ask(window, atoms[bamfFile], longestText), ask(window, XCB_ATOM_WM_CLASS, longestText)});
  }
  const std::string here = QSysInfo::machineHostName().toStdString();
  for (const WindowRead& window : reads) {
    const auto pid = window.pid.numbers();
    std::string machine = window.machine.text();
    machine.resize(std::min(machine.size(), machine.find('\0')));
    desktop::WindowHints hints = window.hints();  // every answer is taken
    if (pid.size() != 1 || (!machine.empty() && machine != here)) continue;
    auto& ofProcess = windows_[static_cast<std::int32_t>(pid.front())];
    if (ofProcess.size() < mostOfOne) ofProcess.push_back(std::move(hints));
  }
}

}  // namespace tarnwick::x11
