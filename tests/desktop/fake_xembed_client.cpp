// A tray icon of the plainest kind, for trying out how the bar treats good and bad clients. Prints
// one line per event of interest; `--help` lists what it can be made to do.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

struct Free {
  void operator()(void* p) const { std::free(p); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

struct Options {
  int depth = 32;
  int size = 24;
  std::uint32_t colour = 0xffcc2222;
  std::string name = "fake-xembed";
  bool resizeLoop = false;
  bool dieBetween = false;
  bool dieDocked = false;
  bool parentRelative = false;
  bool unmapped = false;
  bool window = false;
};

class Client {
 public:
  Client(xcb_connection_t* server, int screenNumber, Options options)
      : server_(server), options_(std::move(options)) {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(server));
    for (int i = screenNumber; i > 0; --i) xcb_screen_next(&it);
    screen_ = it.data;
    tray_ = atom("_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber));
    opcode_ = atom("_NET_SYSTEM_TRAY_OPCODE");
    manager_ = atom("MANAGER");
    xembed_ = atom("_XEMBED");
    xembedInfo_ = atom("_XEMBED_INFO");
    pid_ = atom("_NET_WM_PID");
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(server_, screen_->root, XCB_CW_EVENT_MASK, &mask);
    gc_ = xcb_generate_id(server_);
  }

  int run() {
    if (!createIcon()) {
      std::fprintf(stderr, "no visual of depth %d\n", options_.depth);
      return 1;
    }
    if (!options_.window) askToDock();
    while (!xcb_connection_has_error(server_)) {
      while (Owned<xcb_generic_event_t> event{xcb_poll_for_event(server_)}) handle(event.get());
      if (quit_) return 0;
      if (options_.resizeLoop) resize();
      xcb_flush(server_);
      pollfd waits[] = {{xcb_get_file_descriptor(server_), POLLIN, 0}, {stdin_, POLLIN, 0}};
      poll(waits, 2, options_.resizeLoop ? 1 : -1);
      if (waits[1].revents) readCommands();
    }
    return 0;
  }

 private:
  xcb_atom_t atom(const std::string& name) {
    const auto cookie =
        xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const Owned<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(server_, cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  xcb_visualid_t visual() const {
    if (options_.depth == screen_->root_depth) return screen_->root_visual;
    for (auto depths = xcb_screen_allowed_depths_iterator(screen_); depths.rem;
         xcb_depth_next(&depths)) {
      if (depths.data->depth != options_.depth) continue;
      const auto visuals = xcb_depth_visuals_iterator(depths.data);
      if (visuals.rem) return visuals.data->visual_id;
    }
    return 0;
  }

  bool createIcon() {
    const auto id = visual();
    if (id == 0) return false;
    const auto colormap = xcb_generate_id(server_);
    xcb_create_colormap(server_, XCB_COLORMAP_ALLOC_NONE, colormap, screen_->root, id);
    const auto side = static_cast<std::uint16_t>(options_.size);
    const std::uint32_t values[] = {0, 0,
                                    XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                        XCB_EVENT_MASK_BUTTON_PRESS |
                                        XCB_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW,
                                    colormap};
    icon_ = xcb_generate_id(server_);
    xcb_create_window(server_, static_cast<std::uint8_t>(options_.depth), icon_, screen_->root, 0,
                      0, side, side, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, id,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values);
    if (options_.parentRelative) {
      const std::uint32_t background = XCB_BACK_PIXMAP_PARENT_RELATIVE;
      xcb_change_window_attributes(server_, icon_, XCB_CW_BACK_PIXMAP, &background);
    }
    setText(XCB_ATOM_WM_CLASS, options_.name + '\0' + "FakeXembed" + '\0');
    setText(XCB_ATOM_WM_NAME, options_.name);
    const auto pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, icon_, pid_, XCB_ATOM_CARDINAL, 32, 1,
                        &pid);
    setMapped(!options_.unmapped);
    xcb_create_gc(server_, gc_, icon_, 0, nullptr);
    return true;
  }

  void setText(xcb_atom_t property, const std::string& text) {
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, icon_, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
  }

  void setMapped(bool mapped) {
    const std::uint32_t info[] = {0, mapped ? 1U : 0U};
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, icon_, xembedInfo_, xembedInfo_, 32, 2,
                        info);
  }

  void askToDock() {
    const Owned<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(server_, xcb_get_selection_owner(server_, tray_), nullptr)};
    if (!owner || owner->owner == XCB_WINDOW_NONE) {
      say("no manager");
      return;
    }
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = owner->owner;
    event.type = opcode_;
    event.data.data32[2] = icon_;
    char raw[32]{};
    std::memcpy(raw, &event, sizeof event);
    xcb_send_event(server_, 0, owner->owner, XCB_EVENT_MASK_NO_EVENT, raw);
    say("asked to dock");
    if (!options_.dieBetween) return;
    xcb_destroy_window(server_, icon_);
    quit_ = true;
  }

  void paint() {
    xcb_clear_area(server_, 0, icon_, 0, 0, 0, 0);
    const std::uint32_t foreground = options_.colour;
    xcb_change_gc(server_, gc_, XCB_GC_FOREGROUND, &foreground);
    const auto inner = [](std::uint16_t side) {
      return static_cast<std::uint16_t>(side > 4 ? side - 4 : side);
    };
    const xcb_rectangle_t rectangle{2, 2, inner(width_), inner(height_)};
    xcb_poly_fill_rectangle(server_, icon_, gc_, 1, &rectangle);
  }

  void handle(const xcb_generic_event_t* event) {
    const void* raw = event;
    switch (event->response_type & 0x7f) {
      case XCB_EXPOSE:
        paint();
        break;
      case XCB_CONFIGURE_NOTIFY: {
        const auto* change = static_cast<const xcb_configure_notify_event_t*>(raw);
        if (change->window != icon_) break;
        width_ = change->width;
        height_ = change->height;
        if (!options_.resizeLoop) say("size %d %d", change->width, change->height);
        break;
      }
      case XCB_REPARENT_NOTIFY: {
        const auto* change = static_cast<const xcb_reparent_notify_event_t*>(raw);
        if (change->window == icon_ && change->parent == screen_->root) say("reparented to root");
        break;
      }
      case XCB_MAP_NOTIFY:
        if (static_cast<const xcb_map_notify_event_t*>(raw)->window == icon_) say("mapped");
        break;
      case XCB_UNMAP_NOTIFY:
        if (static_cast<const xcb_unmap_notify_event_t*>(raw)->window == icon_) say("unmapped");
        break;
      case XCB_BUTTON_PRESS:
      case XCB_BUTTON_RELEASE: {
        const auto* button = static_cast<const xcb_button_press_event_t*>(raw);
        const bool press = (event->response_type & 0x7f) == XCB_BUTTON_PRESS;
        say("button %d %s %d %d root %d %d state %d", button->detail, press ? "press" : "release",
            button->event_x, button->event_y, button->root_x, button->root_y, button->state);
        break;
      }
      case XCB_ENTER_NOTIFY:
        say("enter");
        break;
      case XCB_LEAVE_NOTIFY:
        say("leave");
        break;
      case XCB_CLIENT_MESSAGE:
        message(static_cast<const xcb_client_message_event_t*>(raw));
        break;
      default:
        break;
    }
  }

  void message(const xcb_client_message_event_t* event) {
    if (event->type == manager_ && event->data.data32[1] == tray_ && !options_.window) {
      say("manager");
      askToDock();
    } else if (event->type == xembed_ && event->data.data32[1] == 0) {
      const Owned<xcb_get_geometry_reply_t> geometry{
          xcb_get_geometry_reply(server_, xcb_get_geometry(server_, icon_), nullptr)};
      if (!geometry) return;
      width_ = geometry->width;
      height_ = geometry->height;
      say("docked %d %d", geometry->width, geometry->height);
      if (options_.dieDocked) quit_ = true;
    }
  }

  void resize() {
    for (int i = 0; i < 20; ++i) {
      const std::uint32_t side = 16 + ++round_ % 300;
      const std::uint32_t values[] = {side, side};
      xcb_configure_window(server_, icon_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                           values);
    }
  }

  void readCommands() {
    char buffer[512];
    const auto count = read(STDIN_FILENO, buffer, sizeof buffer);
    if (count <= 0) {
      stdin_ = -1;
      return;
    }
    commands_.append(buffer, static_cast<std::size_t>(count));
    for (std::size_t end; (end = commands_.find('\n')) != std::string::npos;) {
      obey(commands_.substr(0, end));
      commands_.erase(0, end + 1);
    }
  }

  void obey(const std::string& command) {
    const auto argument = command.substr(std::min(command.size(), command.find(' ') + 1));
    if (command == "map" || command == "unmap") setMapped(command == "map");
    if (command == "show") xcb_map_window(server_, icon_);
    if (command.starts_with("title ")) setText(XCB_ATOM_WM_NAME, argument);
    if (command.starts_with("colour ")) {
      options_.colour = static_cast<std::uint32_t>(std::stoul(argument, nullptr, 16));
      paint();
    }
  }

  template <class... Values>
  static void say(const char* format, Values... values) {
    std::printf(format, values...);
    std::putchar('\n');
    std::fflush(stdout);
  }

  xcb_connection_t* server_;
  const xcb_screen_t* screen_ = nullptr;
  Options options_;
  xcb_atom_t tray_, opcode_, manager_, xembed_, xembedInfo_, pid_;
  xcb_gcontext_t gc_ = 0;
  xcb_window_t icon_ = 0;
  std::uint16_t width_ = 0;
  std::uint16_t height_ = 0;
  std::string commands_;
  int stdin_ = STDIN_FILENO;
  std::uint32_t round_ = 0;
  bool quit_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Standard input: colour AARRGGBB, title TEXT, map, unmap, show.");
  parser.addHelpOption();
  parser.addOptions({
      {"depth", "of the icon's visual: 24 or 32", "bits", "32"},
      {"size", "side the icon asks for", "n", "24"},
      {"colour", "AARRGGBB, premultiplied; a transparent frame stays around it", "hex", "ffcc2222"},
      {"name", "WM_CLASS instance and title", "text", "fake-xembed"},
      {"parent-relative", "shows its parent around its picture, not black (depth 24)"},
      {"unmapped", "_XEMBED_INFO says not mapped"},
      {"window", "an ordinary window instead of an icon, in sight once told to show"},
      {"resize-loop", "asks for another size all the time"},
      {"die-between", "ends right after asking to be docked"},
      {"die-docked", "ends once docked"},
  });
  parser.process(application);
  const Options options{
      .depth = parser.value("depth").toInt(),
      .size = parser.value("size").toInt(),
      .colour = parser.value("colour").toUInt(nullptr, 16),
      .name = parser.value("name").toStdString(),
      .resizeLoop = parser.isSet("resize-loop"),
      .dieBetween = parser.isSet("die-between"),
      .dieDocked = parser.isSet("die-docked"),
      .parentRelative = parser.isSet("parent-relative"),
      .unmapped = parser.isSet("unmapped"),
      .window = parser.isSet("window"),
  };
  int screenNumber = 0;
  xcb_connection_t* server = xcb_connect(nullptr, &screenNumber);
  if (xcb_connection_has_error(server)) {
    std::fputs("no X server\n", stderr);
    return 1;
  }
  const int result = Client(server, screenNumber, options).run();
  xcb_disconnect(server);
  return result;
}
