// A tray icon of the plainest kind, for trying out how the bar treats good and bad clients. Prints
// one line per event of interest; `--help` lists what it can be made to do.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Free {
  void operator()(void* p) const { std::free(p); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

struct Options {
  int depth = 32;
  int size = 24;
  int count = 1;
  std::uint32_t colour = 0xffcc2222;
  std::string name = "fake-xembed";
  bool resizeLoop = false;
  bool dieBetween = false;
  bool dieDocked = false;
  bool xembedInfo = true;
  bool parentRelative = false;
  bool unmapped = false;
  bool paintStorm = false;
  bool propertyStorm = false;
};

constexpr const char* help =
    "--depth=24|32    of the icon's visual (32)\n"
    "--size=N         side the icon asks for (24)\n"
    "--colour=N       AARRGGBB in hex, premultiplied (ffcc2222); a transparent frame stays around "
    "it\n"
    "--count=N        icons of this process (1)\n"
    "--name=TEXT      WM_CLASS instance and title (fake-xembed); further icons get -2, -3 ...\n"
    "--parent-relative  shows its parent around its picture, not black (depth 24)\n"
    "--unmapped       _XEMBED_INFO says not mapped; standard input: `map`, `unmap`\n"
    "--no-xembed-info no such property\n"
    "--resize-loop    asks for another size all the time\n"
    "--paint-storm    paints all the time\n"
    "--property-storm changes its title all the time\n"
    "--die-between    ends right after asking to be docked\n"
    "--die-docked     ends once docked\n"
    "Standard input: `colour AARRGGBB` paints anew, `title TEXT`, `quit`.\n";

struct Icon {
  xcb_window_t window = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
  bool docked = false;
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
    if (!createIcons()) {
      std::fprintf(stderr, "no visual of depth %d\n", options_.depth);
      return 1;
    }
    askToDock();
    while (!xcb_connection_has_error(server_)) {
      while (Owned<xcb_generic_event_t> event{xcb_poll_for_event(server_)}) handle(event.get());
      if (quit_) return 0;
      const bool busy = options_.resizeLoop || options_.paintStorm || options_.propertyStorm;
      if (busy) storm();
      xcb_flush(server_);
      pollfd waits[] = {{xcb_get_file_descriptor(server_), POLLIN, 0}, {stdin_, POLLIN, 0}};
      poll(waits, 2, busy ? 1 : -1);
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

  bool createIcons() {
    const auto id = visual();
    if (id == 0) return false;
    const auto colormap = xcb_generate_id(server_);
    xcb_create_colormap(server_, XCB_COLORMAP_ALLOC_NONE, colormap, screen_->root, id);
    for (int i = 0; i < options_.count; ++i) {
      Icon icon;
      icon.window = xcb_generate_id(server_);
      const auto side = static_cast<std::uint16_t>(options_.size);
      const std::uint32_t values[] = {0, 0,
                                      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                          XCB_EVENT_MASK_BUTTON_PRESS |
                                          XCB_EVENT_MASK_BUTTON_RELEASE |
                                          XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW,
                                      colormap};
      xcb_create_window(
          server_, static_cast<std::uint8_t>(options_.depth), icon.window, screen_->root, 0, 0,
          side, side, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, id,
          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
      if (options_.parentRelative) {
        const std::uint32_t background = XCB_BACK_PIXMAP_PARENT_RELATIVE;
        xcb_change_window_attributes(server_, icon.window, XCB_CW_BACK_PIXMAP, &background);
      }
      const std::string name = i == 0 ? options_.name : options_.name + "-" + std::to_string(i + 1);
      std::string windowClass = name + '\0' + "FakeXembed" + '\0';
      setText(icon.window, XCB_ATOM_WM_CLASS, windowClass);
      setText(icon.window, XCB_ATOM_WM_NAME, name);
      const auto pid = static_cast<std::uint32_t>(getpid());
      xcb_change_property(server_, XCB_PROP_MODE_REPLACE, icon.window, pid_, XCB_ATOM_CARDINAL, 32,
                          1, &pid);
      if (options_.xembedInfo) setMapped(icon.window, !options_.unmapped);
      if (i == 0) xcb_create_gc(server_, gc_, icon.window, 0, nullptr);
      icons_.push_back(icon);
    }
    return true;
  }

  void setText(xcb_window_t window, xcb_atom_t property, const std::string& text) {
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
  }

  void setMapped(xcb_window_t window, bool mapped) {
    const std::uint32_t info[] = {0, mapped ? 1U : 0U};
    xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, xembedInfo_, xembedInfo_, 32, 2,
                        info);
  }

  void askToDock() {
    const Owned<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(server_, xcb_get_selection_owner(server_, tray_), nullptr)};
    if (!owner || owner->owner == XCB_WINDOW_NONE) {
      say("no manager");
      return;
    }
    for (const auto& icon : icons_) {
      xcb_client_message_event_t event{};
      event.response_type = XCB_CLIENT_MESSAGE;
      event.format = 32;
      event.window = owner->owner;
      event.type = opcode_;
      event.data.data32[2] = icon.window;
      char raw[32]{};
      std::memcpy(raw, &event, sizeof event);
      xcb_send_event(server_, 0, owner->owner, XCB_EVENT_MASK_NO_EVENT, raw);
    }
    say("asked to dock");
    if (!options_.dieBetween) return;
    for (const auto& icon : icons_) xcb_destroy_window(server_, icon.window);
    quit_ = true;
  }

  void paint(const Icon& icon) {
    xcb_clear_area(server_, 0, icon.window, 0, 0, 0, 0);
    const std::uint32_t foreground = options_.colour;
    xcb_change_gc(server_, gc_, XCB_GC_FOREGROUND, &foreground);
    const auto inner = [](std::uint16_t side) {
      return static_cast<std::uint16_t>(side > 4 ? side - 4 : side);
    };
    const xcb_rectangle_t rectangle{2, 2, inner(icon.width), inner(icon.height)};
    xcb_poly_fill_rectangle(server_, icon.window, gc_, 1, &rectangle);
  }

  void handle(const xcb_generic_event_t* event) {
    const void* raw = event;
    switch (event->response_type & 0x7f) {
      case XCB_EXPOSE: {
        auto* icon = find(static_cast<const xcb_expose_event_t*>(raw)->window);
        if (icon) paint(*icon);
        break;
      }
      case XCB_CONFIGURE_NOTIFY: {
        const auto* change = static_cast<const xcb_configure_notify_event_t*>(raw);
        auto* icon = find(change->window);
        if (!icon) break;
        icon->width = change->width;
        icon->height = change->height;
        if (!options_.resizeLoop) say("size %d %d", change->width, change->height);
        break;
      }
      case XCB_REPARENT_NOTIFY: {
        const auto* change = static_cast<const xcb_reparent_notify_event_t*>(raw);
        if (find(change->window) && change->parent == screen_->root) say("reparented to root");
        break;
      }
      case XCB_MAP_NOTIFY:
        if (find(static_cast<const xcb_map_notify_event_t*>(raw)->window)) say("mapped");
        break;
      case XCB_UNMAP_NOTIFY:
        if (find(static_cast<const xcb_unmap_notify_event_t*>(raw)->window)) say("unmapped");
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
    if (event->type == manager_ && event->data.data32[1] == tray_) {
      say("manager");
      askToDock();
    } else if (event->type == xembed_ && event->data.data32[1] == 0) {
      auto* icon = find(event->window);
      if (!icon) return;
      const Owned<xcb_get_geometry_reply_t> geometry{
          xcb_get_geometry_reply(server_, xcb_get_geometry(server_, icon->window), nullptr)};
      if (!geometry) return;
      icon->width = geometry->width;
      icon->height = geometry->height;
      say("docked %d %d", geometry->width, geometry->height);
      if (options_.dieDocked) quit_ = true;
    }
  }

  void storm() {
    for (int i = 0; i < 20; ++i) {
      for (const auto& icon : icons_) {
        if (options_.resizeLoop) {
          const std::uint32_t side = 16 + static_cast<std::uint32_t>(++round_ % 300);
          const std::uint32_t values[] = {side, side};
          xcb_configure_window(server_, icon.window,
                               XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        }
        if (options_.paintStorm) {
          options_.colour = 0xff000000 | (++round_ * 7919U & 0xffffff);
          paint(icon);
        }
        if (options_.propertyStorm)
          setText(icon.window, XCB_ATOM_WM_NAME, "title " + std::to_string(++round_));
      }
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
    for (const auto& icon : icons_) {
      if (command == "map" || command == "unmap") setMapped(icon.window, command == "map");
      if (command.starts_with("title ")) setText(icon.window, XCB_ATOM_WM_NAME, argument);
      if (command.starts_with("colour ")) {
        options_.colour = static_cast<std::uint32_t>(std::stoul(argument, nullptr, 16));
        paint(icon);
      }
    }
    if (command == "quit") quit_ = true;
  }

  Icon* find(xcb_window_t window) {
    for (auto& icon : icons_) {
      if (icon.window == window) return &icon;
    }
    return nullptr;
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
  std::vector<Icon> icons_;
  std::string commands_;
  int stdin_ = STDIN_FILENO;
  std::uint32_t round_ = 0;
  bool quit_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  Options options;
  const std::map<std::string, bool*> switches = {{"--parent-relative", &options.parentRelative},
                                                 {"--unmapped", &options.unmapped},
                                                 {"--resize-loop", &options.resizeLoop},
                                                 {"--paint-storm", &options.paintStorm},
                                                 {"--property-storm", &options.propertyStorm},
                                                 {"--die-between", &options.dieBetween},
                                                 {"--die-docked", &options.dieDocked}};
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const auto equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    // --name=value or --name value
    const auto value = [&]() -> std::string {
      if (equals != std::string::npos) return argument.substr(equals + 1);
      return i + 1 < argc ? argv[++i] : "0";
    };
    if (const auto found = switches.find(name); found != switches.end()) {
      *found->second = true;
    } else if (name == "--no-xembed-info") {
      options.xembedInfo = false;
    } else if (name == "--depth") {
      options.depth = std::stoi(value());
    } else if (name == "--size") {
      options.size = std::stoi(value());
    } else if (name == "--colour") {
      options.colour = static_cast<std::uint32_t>(std::stoul(value(), nullptr, 16));
    } else if (name == "--count") {
      options.count = std::stoi(value());
    } else if (name == "--name") {
      options.name = value();
    } else {
      std::fputs(help, stdout);
      return name == "--help" ? 0 : 2;
    }
  }
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
