#include "common/x11/xcb.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/res.h>
#include <xcb/xfixes.h>

#include <QGuiApplication>
#include <string>

namespace tarnwick::bar::x11 {

namespace {

constexpr int maxTextLength = 1000;

struct NamedAtom {
  const char* name;
  xcb_atom_t Atoms::*member;
};

constexpr NamedAtom namedAtoms[] = {
    {"_BAMF_DESKTOP_FILE", &Atoms::bamfDesktopFile},
    {"_GTK_APPLICATION_ID", &Atoms::gtkApplicationId},
    {"_KDE_NET_WM_DESKTOP_FILE", &Atoms::kdeDesktopFile},
    {"MANAGER", &Atoms::manager},
    {"_NET_ACTIVE_WINDOW", &Atoms::netActiveWindow},
    {"_NET_CLIENT_LIST", &Atoms::netClientList},
    {"_NET_CURRENT_DESKTOP", &Atoms::netCurrentDesktop},
    {"_NET_SYSTEM_TRAY_COLORS", &Atoms::netTrayColors},
    {"_NET_SYSTEM_TRAY_ICON_SIZE", &Atoms::netTrayIconSize},
    {"_NET_SYSTEM_TRAY_OPCODE", &Atoms::netTrayOpcode},
    {"_NET_SYSTEM_TRAY_ORIENTATION", &Atoms::netTrayOrientation},
    {"_NET_SYSTEM_TRAY_PADDING", &Atoms::netTrayPadding},
    {"_NET_SYSTEM_TRAY_VISUAL", &Atoms::netTrayVisual},
    {"_NET_WM_DESKTOP", &Atoms::netWmDesktop},
    {"_NET_WM_NAME", &Atoms::netWmName},
    {"_NET_WM_PID", &Atoms::netWmPid},
    {"_NET_WM_STATE", &Atoms::netWmState},
    {"_NET_WM_STATE_ABOVE", &Atoms::netWmStateAbove},
    {"_NET_WM_STATE_SKIP_PAGER", &Atoms::netWmStateSkipPager},
    {"_NET_WM_STATE_SKIP_TASKBAR", &Atoms::netWmStateSkipTaskbar},
    {"_NET_WM_STATE_STICKY", &Atoms::netWmStateSticky},
    {"_NET_WM_STRUT", &Atoms::netWmStrut},
    {"_NET_WM_STRUT_PARTIAL", &Atoms::netWmStrutPartial},
    {"_NET_WM_WINDOW_TYPE", &Atoms::netWmWindowType},
    {"_NET_WM_WINDOW_TYPE_DOCK", &Atoms::netWmWindowTypeDock},
    {"UTF8_STRING", &Atoms::utf8String},
    {"WM_PROTOCOLS", &Atoms::wmProtocols},
    {"WM_TAKE_FOCUS", &Atoms::wmTakeFocus},
    {"_XEMBED", &Atoms::xembed},
    {"_XEMBED_INFO", &Atoms::xembedInfo},
};

Atoms internAtoms() {
  auto* server = connection();
  const auto intern = [server](const std::string& name) {
    return Pending<xcb_intern_atom_reply>(
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.c_str()));
  };
  std::vector<Pending<xcb_intern_atom_reply>> pending;
  for (const auto& named : namedAtoms) pending.push_back(intern(named.name));
  auto tray = intern("_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber()));

  Atoms result{};
  const auto value = [](Pending<xcb_intern_atom_reply>& request) {
    const auto reply = request.take();
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  };
  for (std::size_t i = 0; i < pending.size(); ++i) result.*namedAtoms[i].member = value(pending[i]);
  result.netTray = value(tray);
  return result;
}

Extensions negotiateExtensions() {
  auto* server = connection();
  xcb_prefetch_extension_data(server, &xcb_composite_id);
  xcb_prefetch_extension_data(server, &xcb_damage_id);
  xcb_prefetch_extension_data(server, &xcb_xfixes_id);
  xcb_prefetch_extension_data(server, &xcb_res_id);
  const auto* composite = xcb_get_extension_data(server, &xcb_composite_id);
  const auto* damage = xcb_get_extension_data(server, &xcb_damage_id);
  const auto* fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
  const auto* resources = xcb_get_extension_data(server, &xcb_res_id);
  const auto present = [](const xcb_query_extension_reply_t* data) {
    return data && data->present;
  };

  Extensions result;
  if (present(resources)) {
    const auto version =
        Pending<xcb_res_query_version_reply>(xcb_res_query_version(server, 1, 2)).take();
    result.clientIds = version && (version->server_major > 1 || version->server_minor >= 2);
  }
  if (!present(composite) || !present(damage) || !present(fixes)) return result;
  Pending<xcb_composite_query_version_reply> compositeVersion(
      xcb_composite_query_version(server, 0, 4));
  Pending<xcb_damage_query_version_reply> damageVersion(xcb_damage_query_version(server, 1, 1));
  Pending<xcb_xfixes_query_version_reply> fixesVersion(
      xcb_xfixes_query_version(server, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION));
  const auto compositeReply = compositeVersion.take();
  const auto fixesReply = fixesVersion.take();
  // Composite 0.2 draws a parent through its redirected children; XFixes 2 has input shapes.
  result.complete = compositeReply && damageVersion.take() && fixesReply &&
                    (compositeReply->major_version > 0 || compositeReply->minor_version >= 2) &&
                    fixesReply->major_version >= 2;
  result.damageNotify = damage->first_event + XCB_DAMAGE_NOTIFY;
  result.selectionNotify = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
  return result;
}

}  // namespace

xcb_connection_t* connection() {
  const auto* application = qGuiApp;
  const auto* x11 =
      application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return x11 ? x11->connection() : nullptr;
}

int screenNumber() {
  static const int number = [] {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) return 0;
    std::free(host);
    return screen;
  }();
  return number;
}

const xcb_screen_t* screen() {
  auto* server = connection();
  if (!server) return nullptr;
  auto it = xcb_setup_roots_iterator(xcb_get_setup(server));
  for (int i = screenNumber(); i > 0 && it.rem > 1; --i) xcb_screen_next(&it);
  return it.data;
}

xcb_window_t rootWindow() {
  const auto* s = screen();
  return s ? s->root : xcb_window_t{XCB_WINDOW_NONE};
}

PropertyRead::PropertyRead(xcb_window_t window, xcb_atom_t property, std::uint32_t maxBytes)
    : reply_(xcb_get_property(connection(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                              maxBytes / 4)) {}

std::vector<std::uint32_t> PropertyRead::numbers() {
  const auto reply = reply_.take();
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::pair<QByteArray, xcb_atom_t> PropertyRead::bytes() {
  const auto reply = reply_.take();
  if (!reply || reply->format != 8) return {{}, XCB_ATOM_NONE};
  return {QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                     xcb_get_property_value_length(reply.get())),
          reply->type};
}

QString PropertyRead::text() {
  const auto [value, type] = bytes();
  const QString text =
      type == atoms().utf8String ? QString::fromUtf8(value) : QString::fromLatin1(value);
  return text.left(maxTextLength);
}

void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                std::span<const std::uint32_t> values) {
  quiet(xcb_change_property_checked(connection(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                                    static_cast<std::uint32_t>(values.size()), values.data()));
}

void sendMessage(xcb_window_t to, xcb_window_t subject, xcb_atom_t type,
                 const std::array<std::uint32_t, 5>& data, std::uint32_t eventMask) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = subject;
  event.type = type;
  std::memcpy(event.data.data32, data.data(), sizeof event.data.data32);
  sendEvent(to, eventMask, event);
}

void selectRootEvents(std::uint32_t mask) {
  auto* server = connection();
  const auto root = rootWindow();
  const auto present =
      Pending<xcb_get_window_attributes_reply>(xcb_get_window_attributes(server, root)).take();
  const std::uint32_t events = mask | (present ? present->your_event_mask : 0U);
  quiet(xcb_change_window_attributes_checked(server, root, XCB_CW_EVENT_MASK, &events));
}

const Atoms& atoms() {
  static const Atoms interned = internAtoms();
  return interned;
}

const Extensions& extensions() {
  static const Extensions negotiated = negotiateExtensions();
  return negotiated;
}

}  // namespace tarnwick::bar::x11
