#include "bench/desktop/probe.h"

#include <poll.h>

#include <QDBusMessage>
#include <QDBusMetaType>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "harness/fake_sni_options.h"

namespace tarnwick::bench {

using namespace std::chrono_literals;

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

// The number after a field's name in a file of "Name: number ..." lines.
double field(const std::string& file, const std::string& name) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(name + ':')) return std::atof(line.c_str() + name.size() + 1);
  }
  return 0;
}

}  // namespace

Usage usageOf(qint64 pid) {
  const std::string process = "/proc/" + std::to_string(pid);
  Usage usage;
  for (const auto& thread : std::filesystem::directory_iterator(process + "/task")) {
    usage.wakeUps +=
        std::lround(field(thread.path().string() + "/status", "voluntary_ctxt_switches"));
    double nanoseconds = 0;
    std::ifstream(thread.path() / "schedstat") >> nanoseconds;
    usage.cpu += nanoseconds / 1e6;
  }
  usage.anonymous = field(process + "/smaps_rollup", "Anonymous");
  usage.proportional = field(process + "/smaps_rollup", "Pss");
  return usage;
}

Display::Display(const QString& name)
    : connection_(xcb_connect(name.toLatin1().constData(), nullptr)),
      screen_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data) {}

Display::~Display() {
  xcb_disconnect(connection_);
}

void Display::watchMapping() {
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, screen_->root, XCB_CW_EVENT_MASK, &mask);
  // A round trip: the server knows of it now.
  const Reply<xcb_get_input_focus_reply_t> answer(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool Display::waitForWideWindow() {
  const auto end = Clock::now() + 20s;
  pollfd input{xcb_get_file_descriptor(connection_), POLLIN, 0};
  while (Clock::now() < end) {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (!event) {
      poll(&input, 1, 100);
      continue;
    }
    if ((event->response_type & 0x7f) != XCB_MAP_NOTIFY) continue;
    const auto window = reinterpret_cast<xcb_map_notify_event_t*>(event.get())->window;
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    if (geometry && geometry->width == screen_->width_in_pixels) return true;
  }
  return false;
}

bool Display::hasColour(std::uint32_t colour, int y) {
  const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
      connection_,
      xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0,
                    static_cast<std::int16_t>(y), screen_->width_in_pixels, 1, ~0U),
      nullptr));
  if (!image) return false;
  const auto* pixel = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
  return std::any_of(pixel, pixel + xcb_get_image_data_length(image.get()) / 4,
                     [colour](std::uint32_t value) { return (value & 0xffffff) == colour; });
}

ColourWatch::ColourWatch(const QString& display, std::uint32_t colour, int y)
    : thread_([this, display, colour, y] {
        Display screen(display);
        while (!stop_) {
          if (screen.hasColour(colour, y)) {
            seen_ = Clock::now().time_since_epoch().count();
            return;
          }
          std::this_thread::sleep_for(300us);
        }
      }) {}

ColourWatch::~ColourWatch() {
  stop_ = true;
  thread_.join();
}

std::optional<Clock::time_point> ColourWatch::seen() const {
  const Clock::rep at = seen_;
  if (at == 0) return std::nullopt;
  return Clock::time_point(Clock::duration(at));
}

namespace {

QVariant square(std::uint32_t colour) {
  constexpr int side = 22;
  QByteArray bytes;
  for (int i = 0; i < side * side; ++i) {
    for (const int shift : {24, 16, 8, 0}) {
      bytes += static_cast<char>((colour | 0xff000000U) >> shift);
    }
  }
  return QVariant::fromValue(QList<fake::Pixmap>{{side, side, bytes}});
}

}  // namespace

Items::Items(const QDBusConnection& bus, int count, std::uint32_t colour)
    : bus_(bus), count_(count) {
  qDBusRegisterMetaType<fake::Pixmap>();
  qDBusRegisterMetaType<QList<fake::Pixmap>>();
  properties_ = {{"Category", "ApplicationStatus"},
                 {"Id", "bench"},
                 {"Title", "Bench"},
                 {"Status", "Active"},
                 {"IconPixmap", square(colour)}};
  bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
}

// The connection ends, and with it the items.
Items::~Items() {
  QDBusConnection::disconnectFromBus(bus_.name());
}

void Items::registerAll() {
  constexpr auto watcher = "org.kde.StatusNotifierWatcher";
  for (int i = 0; i < count_; ++i) {
    QDBusMessage call = QDBusMessage::createMethodCall(watcher, "/StatusNotifierWatcher", watcher,
                                                       "RegisterStatusNotifierItem");
    call.setArguments({QStringLiteral("%1/item/%2").arg(bus_.baseService()).arg(i)});
    bus_.send(call);
  }
}

void Items::setColour(std::uint32_t colour) {
  properties_["IconPixmap"] = square(colour);
  bus_.send(QDBusMessage::createSignal("/item/0", "org.kde.StatusNotifierItem", "NewIcon"));
}

bool Items::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.member() != "GetAll") return false;
  QVariantMap properties = properties_;
  properties["Id"] = "bench" + message.path().section('/', -1);
  connection.send(message.createReply(QVariantList{properties}));
  return true;
}

double quantile(std::vector<double> values, double part) {
  if (values.empty()) return std::nan("");
  std::sort(values.begin(), values.end());
  const double place = part * static_cast<double>(values.size() - 1);
  const auto low = static_cast<std::size_t>(place);
  const std::size_t high = std::min(low + 1, values.size() - 1);
  return values[low] + (values[high] - values[low]) * (place - static_cast<double>(low));
}

void printHeader() {
  std::printf("| what | median (min - max) | runs | budget |\n|---|---|---|---|\n");
}

void print(const Row& row, const std::vector<double>& values) {
  std::printf("| %s | %.*f", row.what.c_str(), row.decimals, quantile(values, 0.5));
  if (values.size() > 1) {
    std::printf(" (%.*f - %.*f)", row.decimals, quantile(values, 0), row.decimals,
                quantile(values, 1));
  }
  std::printf(" %s | %zu | %s |\n", row.unit.c_str(), values.size(), row.budget.c_str());
  std::fflush(stdout);
}

}  // namespace tarnwick::bench
