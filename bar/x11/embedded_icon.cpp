#include "bar/x11/embedded_icon.h"

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <QColor>
#include <algorithm>
#include <chrono>

#include "bar/board/placeholder.h"

namespace tarnwick::bar::x11 {

using namespace std::chrono_literals;

namespace {

// About 30 looks a second, more at once only for a moment: a new icon paints several times.
constexpr qint64 refreshInterval = 33;  // ms
constexpr qint64 refreshBurst = 8 * refreshInterval;
// The first paint often brings no damage.
constexpr auto firstLook = 500ms;
// GTK clients unmap their icon once more after a change of managers, late, and mean nothing by it.
constexpr auto unmapGrace = 60ms;
constexpr int maxQuickAnswers = 5;
constexpr auto slowAnswer = 1s;
constexpr qint64 sizeQuarrelOver = 5000;  // ms
constexpr int maxEventsPerSecond = 400;
constexpr auto deafTime = 1s;
constexpr std::int16_t parkedAt = -8000;

}  // namespace

EmbeddedIcon::EmbeddedIcon(const IconFacts& facts, xcb_window_t bar, std::uint16_t side,
                           const QColor& ground)
    : icon_(facts.window),
      visual_(facts.visual),
      depth_(facts.depth),
      side_(side),
      place_(parkedAt, 0),
      ground_(ground.rgb()),
      layout_(pixelLayout(*xcb_get_setup(connection()), facts.visual, facts.depth)),
      title_(facts.title),
      hasInfo_(facts.wantsMapped.has_value()) {
  clock_.start();
  refreshTimer_.setSingleShot(true);
  connect(&refreshTimer_, &QTimer::timeout, this, &EmbeddedIcon::refresh);
  createWrapper(bar, ground);
  embed(facts.mapped);
  show(facts.wantsMapped.value_or(true));
  xcb_flush(connection());
  QTimer::singleShot(firstLook, this, [this] { refreshSoon(picturePart | infoPart | placePart); });
}

EmbeddedIcon::~EmbeddedIcon() {
  auto* server = connection();
  if (!server) return;
  if (!gone_) {
    const std::uint32_t noEvents = 0;
    quiet(xcb_change_window_attributes_checked(server, icon_, XCB_CW_EVENT_MASK, &noEvents));
    quiet(xcb_unmap_window_checked(server, icon_));
    quiet(xcb_reparent_window_checked(server, icon_, rootWindow(), 0, 0));
    quiet(xcb_change_save_set_checked(server, XCB_SET_MODE_DELETE, icon_));
  }
  quiet(xcb_damage_destroy_checked(server, damage_));
  quiet(xcb_destroy_window_checked(server, wrapper_));
  quiet(xcb_free_colormap_checked(server, colormap_));
  xcb_flush(server);
}

void EmbeddedIcon::createWrapper(xcb_window_t bar, const QColor& ground) {
  auto* server = connection();
  colormap_ = xcb_generate_id(server);
  quiet(xcb_create_colormap_checked(server, XCB_COLORMAP_ALLOC_NONE, colormap_, rootWindow(),
                                    visual_));
  wrapper_ = xcb_generate_id(server);
  // Icons without alpha often take over their parent's background.
  const bool opaque = depth_ != 32 && layout_;
  const std::uint32_t values[] = {opaque ? pixelOf(*layout_, ground.rgb()) : 0, 0,
                                  XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, colormap_};
  quiet(xcb_create_window_checked(
      server, depth_, wrapper_, bar, static_cast<std::int16_t>(place_.x()),
      static_cast<std::int16_t>(place_.y()), side_, side_, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
      visual_, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
      values));
  quiet(xcb_composite_redirect_window_checked(server, wrapper_, XCB_COMPOSITE_REDIRECT_MANUAL));
  damage_ = xcb_generate_id(server);
  quiet(xcb_damage_create_checked(server, damage_, wrapper_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY));
}

void EmbeddedIcon::embed(bool wasMapped) {
  auto* server = connection();
  if (wasMapped) quiet(xcb_unmap_window_checked(server, icon_));
  // Should the bar die, its icons survive on the root window, unseen until the next tray asks.
  quiet(xcb_xfixes_change_save_set_checked(server, XCB_XFIXES_SAVE_SET_MODE_INSERT,
                                           XCB_XFIXES_SAVE_SET_TARGET_ROOT,
                                           XCB_XFIXES_SAVE_SET_MAPPING_UNMAP, icon_));
  quiet(xcb_reparent_window_checked(server, icon_, wrapper_, 0, 0));
  fitIcon();
  constexpr std::uint32_t embeddedNotify = 0;
  sendMessage(icon_, icon_, atoms().xembed,
              {XCB_CURRENT_TIME, embeddedNotify, 0, wrapper_, 0 /* protocol version */},
              XCB_EVENT_MASK_NO_EVENT);
  quiet(xcb_map_window_checked(server, wrapper_));
}

void EmbeddedIcon::fitIcon() {
  const std::uint32_t geometry[] = {0, 0, side_, side_, 0};
  quiet(xcb_configure_window_checked(connection(), icon_,
                                     XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT |
                                         XCB_CONFIG_WINDOW_BORDER_WIDTH,
                                     geometry));
}

void EmbeddedIcon::move(QPoint place) {
  place.setX(std::clamp<int>(place.x(), parkedAt, INT16_MAX));
  place.setY(std::clamp<int>(place.y(), INT16_MIN, INT16_MAX));
  if (place == place_) return;
  place_ = place;
  const std::uint32_t values[] = {static_cast<std::uint32_t>(place.x()),
                                  static_cast<std::uint32_t>(place.y())};
  quiet(xcb_configure_window_checked(connection(), wrapper_,
                                     XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values));
  xcb_flush(connection());
}

void EmbeddedIcon::setSide(std::uint16_t side) {
  if (side == side_) return;
  side_ = side;
  const std::uint32_t values[] = {side, side};
  quiet(xcb_configure_window_checked(connection(), wrapper_,
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values));
  fitIcon();
  refreshSoon(picturePart);
  xcb_flush(connection());
}

void EmbeddedIcon::setPointerThrough(bool through) {
  auto* server = connection();
  xcb_xfixes_region_t region = XCB_NONE;  // the whole window
  if (through) {
    region = xcb_generate_id(server);
    xcb_xfixes_create_region(server, region, 0, nullptr);
  }
  quiet(xcb_xfixes_set_window_shape_region_checked(server, wrapper_, XCB_SHAPE_SK_INPUT, 0, 0,
                                                   region));
  if (through) xcb_xfixes_destroy_region(server, region);
  xcb_flush(server);
}

void EmbeddedIcon::follow(std::optional<bool> wantsMapped) {
  if (!wantsMapped) return;
  hasInfo_ = true;
  show(*wantsMapped);
}

void EmbeddedIcon::show(bool shown) {
  if (shown) {
    mapSequence_ = xcb_map_window_checked(connection(), icon_).sequence;
    xcb_discard_reply(connection(), mapSequence_);
    refreshSoon(picturePart);
  } else {
    quiet(xcb_unmap_window_checked(connection(), icon_));
  }
  setShown(shown);
}

void EmbeddedIcon::setShown(bool shown) {
  if (shown == shown_) return;
  shown_ = shown;
  emit shownChanged();
}

void EmbeddedIcon::handle(const xcb_generic_event_t* event) {
  if (gone_) return;
  countEvent();
  const void* raw = event;
  const std::uint8_t type = event->response_type & 0x7f;
  if (type == extensions().damageNotify) {
    refreshSoon(picturePart);
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto atom = static_cast<const xcb_property_notify_event_t*>(raw)->atom;
    if (atom == atoms().xembedInfo) refreshSoon(infoPart);
    if (atom == atoms().netWmName || atom == XCB_ATOM_WM_NAME) refreshSoon(titlePart);
  } else if (type == XCB_CONFIGURE_REQUEST) {
    sizeAsked();
  } else if (type == XCB_MAP_REQUEST) {
    if (hasInfo_) {
      refreshSoon(infoPart);
    } else {
      show(true);
    }
  } else if (type == XCB_UNMAP_NOTIFY) {
    unmapped(event->full_sequence);
  } else if (type == XCB_DESTROY_NOTIFY) {
    leave();
  } else if (type == XCB_REPARENT_NOTIFY) {
    if (static_cast<const xcb_reparent_notify_event_t*>(raw)->parent != wrapper_) leave();
  }
}

void EmbeddedIcon::leave() {
  const std::uint32_t noEvents = 0;
  quiet(xcb_change_window_attributes_checked(connection(), icon_, XCB_CW_EVENT_MASK, &noEvents));
  quiet(xcb_change_save_set_checked(connection(), XCB_SET_MODE_DELETE, icon_));
  gone_ = true;
  emit left();
}

void EmbeddedIcon::unmapped(std::uint32_t sequence) {
  const auto sinceMap = static_cast<std::int32_t>(sequence - mapSequence_);
  if (!shown_ || sinceMap < 0) return;  // our own doing
  if (!hasInfo_) return setShown(false);
  QTimer::singleShot(unmapGrace, this, [this] { refreshSoon(infoPart); });
}

void EmbeddedIcon::sizeAsked() {
  const qint64 now = clock_.elapsed();
  if (now - std::exchange(lastSizeAsked_, now) > sizeQuarrelOver) quickAnswers_ = 0;
  if (answerDue_) return;
  if (quickAnswers_ < maxQuickAnswers) {
    ++quickAnswers_;
    sendGeometry();
    return;
  }
  answerDue_ = true;
  QTimer::singleShot(slowAnswer, this, [this] {
    answerDue_ = false;
    sendGeometry();
  });
}

void EmbeddedIcon::sendGeometry() {
  const auto origin = Pending<xcb_translate_coordinates_reply>(
                          xcb_translate_coordinates(connection(), wrapper_, rootWindow(), 0, 0))
                          .take();
  if (!origin) return;
  xcb_configure_notify_event_t event{};
  event.response_type = XCB_CONFIGURE_NOTIFY;
  event.event = icon_;
  event.window = icon_;
  event.x = origin->dst_x;
  event.y = origin->dst_y;
  event.width = side_;
  event.height = side_;
  sendEvent(icon_, XCB_EVENT_MASK_STRUCTURE_NOTIFY, event);
  xcb_flush(connection());
}

void EmbeddedIcon::refreshSoon(unsigned parts) {
  stale_ |= parts;
  if (gone_ || refreshTimer_.isActive()) return;
  const qint64 wait = refreshDue_ - refreshBurst - clock_.elapsed();
  refreshTimer_.start(static_cast<int>(std::max<qint64>(wait, 0)));
}

void EmbeddedIcon::refresh() {
  refreshDue_ = std::max(refreshDue_, clock_.elapsed()) + refreshInterval;
  const unsigned parts = std::exchange(stale_, 0);
  auto* server = connection();
  if (gone_ || !server) return;

  std::optional<Pending<xcb_query_tree_reply>> tree;
  std::optional<PropertyRead> info;
  std::optional<std::pair<PropertyRead, PropertyRead>> titles;
  std::optional<Pending<xcb_get_image_reply>> image;
  if (parts & placePart) tree.emplace(xcb_query_tree(server, icon_));
  if (parts & infoPart) info.emplace(icon_, atoms().xembedInfo, 8);
  if (parts & titlePart)
    titles.emplace(PropertyRead(icon_, atoms().netWmName), PropertyRead(icon_, XCB_ATOM_WM_NAME));
  if ((parts & picturePart) && shown_ && layout_) {
    const xcb_pixmap_t pixmap = xcb_generate_id(server);
    quiet(xcb_damage_subtract_checked(server, damage_, XCB_NONE, XCB_NONE));
    quiet(xcb_composite_name_window_pixmap_checked(server, wrapper_, pixmap));
    image.emplace(
        xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0, side_, side_, ~0U));
    quiet(xcb_free_pixmap_checked(server, pixmap));
  }

  if (tree) {
    const auto reply = tree->take();
    if (!reply || reply->parent != wrapper_) return leave();
  }
  if (info) follow(wantsMapped(*info));
  if (titles) {
    const QString title = titleOf(titles->first, titles->second);
    if (title != std::exchange(title_, title)) emit titleChanged();
  }
  if (const auto reply = image ? image->take() : nullptr) takePicture(*reply);
  xcb_flush(server);
}

void EmbeddedIcon::takePicture(xcb_get_image_reply_t& image) {
  const std::span bytes(xcb_get_image_data(&image),
                        static_cast<std::size_t>(xcb_get_image_data_length(&image)));
  const QImage picture = pictureOf(bytes, {side_, side_}, *layout_, ground_);
  // Some clients clear their icon before each frame: the last picture stays meanwhile.
  if (picture.isNull() || isWhollyTransparent(picture) || picture == picture_) return;
  picture_ = picture;
  emit pictureChanged();
}

void EmbeddedIcon::countEvent() {
  const qint64 now = clock_.elapsed();
  if (now - eventsSince_ > 1000) {
    eventsSince_ = now;
    events_ = 0;
  }
  if (++events_ <= maxEventsPerSecond || deaf_) return;
  setDeaf(true);
  QTimer::singleShot(deafTime, this, [this] { setDeaf(false); });
}

void EmbeddedIcon::setDeaf(bool deaf) {
  if (gone_) return;
  deaf_ = deaf;
  const std::uint32_t ofIcon = deaf ? 0 : iconEvents;
  const std::uint32_t ofWrapper = deaf ? 0 : XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
  auto* server = connection();
  quiet(xcb_change_window_attributes_checked(server, icon_, XCB_CW_EVENT_MASK, &ofIcon));
  quiet(xcb_change_window_attributes_checked(server, wrapper_, XCB_CW_EVENT_MASK, &ofWrapper));
  if (!deaf) {
    fitIcon();
    refreshSoon(picturePart | infoPart | titlePart | placePart);
  }
  xcb_flush(server);
}

}  // namespace tarnwick::bar::x11
