#include "bar/x11/tray_manager.h"

#include <QCoreApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>
#include <algorithm>

namespace tarnwick::bar::x11 {

namespace {

constexpr qsizetype maxIcons = 1000;
constexpr std::ptrdiff_t maxIconsOfProcess = 64;
constexpr std::size_t maxDocksPerTurn = 1000;

// A 32-bit visual, so that icons can be transparent. 0 when there is none.
xcb_visualid_t argbVisual() {
  for (auto depths = xcb_screen_allowed_depths_iterator(screen()); depths.rem;
       xcb_depth_next(&depths)) {
    if (depths.data->depth != 32) continue;
    for (auto it = xcb_depth_visuals_iterator(depths.data); it.rem; xcb_visualtype_next(&it)) {
      if (it.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) return it.data->visual_id;
    }
  }
  return 0;
}

// The window an event is about, as far as icons and wrappers are concerned.
xcb_window_t subjectOf(const xcb_generic_event_t* event) {
  const void* raw = event;
  const std::uint8_t type = event->response_type & 0x7f;
  if (type == extensions().damageNotify)
    return static_cast<const xcb_damage_notify_event_t*>(raw)->drawable;
  switch (type) {
    case XCB_PROPERTY_NOTIFY:
      return static_cast<const xcb_property_notify_event_t*>(raw)->window;
    case XCB_CONFIGURE_REQUEST:
      return static_cast<const xcb_configure_request_event_t*>(raw)->window;
    case XCB_MAP_REQUEST:
      return static_cast<const xcb_map_request_event_t*>(raw)->window;
    case XCB_CONFIGURE_NOTIFY:
      return static_cast<const xcb_configure_notify_event_t*>(raw)->window;
    case XCB_MAP_NOTIFY:
      return static_cast<const xcb_map_notify_event_t*>(raw)->window;
    case XCB_UNMAP_NOTIFY:
      return static_cast<const xcb_unmap_notify_event_t*>(raw)->window;
    case XCB_DESTROY_NOTIFY:
      return static_cast<const xcb_destroy_notify_event_t*>(raw)->window;
    case XCB_REPARENT_NOTIFY:
      return static_cast<const xcb_reparent_notify_event_t*>(raw)->window;
    case XCB_CLIENT_MESSAGE:
      return static_cast<const xcb_client_message_event_t*>(raw)->window;
    default:
      return XCB_WINDOW_NONE;
  }
}

}  // namespace

TrayManager::TrayManager(Board& board, QWidget& barWindow, desktop::IdentityResolver& identities,
                         QObject* parent)
    : QObject(parent), board_(board), bar_(barWindow), identities_(identities) {
  connect(&selection_, &TraySelection::dockRequested, this, &TrayManager::queueDock);
  connect(&selection_, &TraySelection::lost, this, &TrayManager::releaseIcons);
  connect(&board_, &Board::itemRemoved, this, [this](ItemId id) {
    const auto found = std::find_if(icons_.begin(), icons_.end(),
                                    [id](const Entry& entry) { return entry.id == id; });
    if (found != icons_.end()) remove(found.key());
  });
}

TrayManager::~TrayManager() {
  disconnect(&board_, nullptr, this, nullptr);
  shutdown();
}

bool TrayManager::start() {
  if (running_) return true;
  if (!connection() || !extensions().complete) return false;
  visual_ = argbVisual();
  if (visual_ == 0) return false;
  running_ = true;
  qApp->installNativeEventFilter(this);
  bar_.installEventFilter(this);
  watchSurface();
  selection_.acquire(look());
  return true;
}

void TrayManager::shutdown() {
  if (!std::exchange(running_, false)) return;
  releaseIcons();
  selection_.release();
  bar_.removeEventFilter(this);
  qApp->removeNativeEventFilter(this);
}

TrayLook TrayManager::look() const {
  return {visual_, bar_.palette().color(QPalette::WindowText), iconPixels(bar_)};
}

void TrayManager::watchSurface() {
  bar_.winId();
  bar_.windowHandle()->installEventFilter(this);
}

bool TrayManager::eventFilter(QObject* watched, QEvent* event) {
  if (!running_) return false;
  if (watched == &bar_) {
    const auto type = event->type();
    if (type == QEvent::PaletteChange || type == QEvent::Resize ||
        type == QEvent::ScreenChangeInternal) {
      selection_.setLook(look());
    } else if (type == QEvent::WinIdChange && bar_.windowHandle() && bar_.internalWinId() != 0) {
      // The bar has a new X window: the clients come again.
      watchSurface();
      selection_.acquire(look());
    }
  } else if (event->type() == QEvent::PlatformSurface) {
    const auto* surface = static_cast<QPlatformSurfaceEvent*>(event);
    if (surface->surfaceEventType() == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
      releaseIcons();
      selection_.release();
    }
  }
  return false;
}

bool TrayManager::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if (selection_.handle(event)) return true;
  if (icons_.isEmpty()) return false;
  const xcb_window_t subject = subjectOf(event);
  if (subject == XCB_WINDOW_NONE) return false;
  const auto found = icons_.constFind(wrappers_.value(subject, subject));
  if (found == icons_.cend() || !found->item || !found->item->icon()) return false;
  found->item->icon()->handle(event);
  return true;
}

void TrayManager::queueDock(xcb_window_t window) {
  const auto docked = icons_.constFind(window);
  if (docked != icons_.cend() && docked->item && docked->item->icon()->isGone()) remove(window);
  // A window of our own cannot go into a wrapper: it may hold that.
  const auto* setup = xcb_get_setup(connection());
  const bool own = (window & ~setup->resource_id_mask) == setup->resource_id_base;
  const bool known = own || icons_.contains(window) || wrappers_.contains(window) ||
                     window == rootWindow() || window == bar_.internalWinId() ||
                     std::find(docking_.begin(), docking_.end(), window) != docking_.end();
  if (known || docking_.size() >= maxDocksPerTurn) return;
  docking_.push_back(window);
  if (docking_.size() == 1)
    QMetaObject::invokeMethod(this, &TrayManager::dockQueued, Qt::QueuedConnection);
}

void TrayManager::dockQueued() {
  std::vector<IconProbe> probes;
  probes.reserve(docking_.size());
  for (const xcb_window_t window : std::exchange(docking_, {})) probes.emplace_back(window);
  for (auto& probe : probes) {
    if (const auto facts = probe.take(); facts && running_ && icons_.size() < maxIcons)
      dock(*facts);
  }
}

void TrayManager::dock(const IconFacts& facts) {
  const auto ofProcess = std::count_if(icons_.cbegin(), icons_.cend(), [&](const Entry& entry) {
    return facts.pid > 0 && entry.pid == facts.pid;
  });
  if (ofProcess >= maxIconsOfProcess) return;
  QString bundleId = facts.windowClass;
  if (const auto identity = facts.pid > 0 ? identities_.identify(facts.pid) : std::nullopt)
    bundleId = QString::fromStdString(identity->bundleId);
  auto item = std::make_unique<XembedItem>(facts, bundleId, bar_, selection_);
  connect(
      item->icon(), &EmbeddedIcon::left, this, [this, icon = facts.window] { remove(icon); },
      Qt::QueuedConnection);
  wrappers_.insert(item->icon()->wrapper(), facts.window);
  const QPointer<XembedItem> docked(item.get());
  icons_.insert(facts.window, {docked, 0, facts.pid});
  const ItemId id = board_.add(std::move(item));
  icons_.insert(facts.window, {docked, id, facts.pid});
}

void TrayManager::remove(xcb_window_t icon) {
  const Entry entry = icons_.take(icon);
  if (entry.item && entry.item->icon()) {
    wrappers_.remove(entry.item->icon()->wrapper());
    entry.item->handBack();
  }
  if (entry.id != 0) board_.remove(entry.id);
}

void TrayManager::releaseIcons() {
  docking_.clear();
  for (const xcb_window_t icon : icons_.keys()) remove(icon);
}

}  // namespace tarnwick::bar::x11
