#include "bar/bar_app.h"

#include <QCoreApplication>
#include <QFile>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "bar/access/privacy_window.h"
#include "bar/board/metrics.h"
#include "bar/settings/menu_bar_pane.h"
#include "bar/x11/bring_to_user.h"
#include "bar/x11/dock.h"
#include "bar/x11/pointer.h"
#include "common/x11/window_hints.h"

namespace tarnwick::bar {

namespace {

using desktop::JsonFile;
using desktop::JsonRoot;

constexpr int rereadDelayMs = 100;

std::filesystem::path configFolder() {
  return desktop::configHome() / "tarnwick-bar";
}

}  // namespace

BarApp::BarApp(QDBusConnection bus)
    : bus_(std::move(bus)),
      identities_(&x11::windowHints),
      settings_(JsonFile(configFolder() / "settings.json", JsonRoot::object)),
      positions_(board_, JsonFile(desktop::stateHome() / "tarnwick-bar" / "positions.json",
                                  JsonRoot::array)),
      callers_(bus_),
      accessStore_(JsonFile(configFolder() / "access.json", JsonRoot::object),
                   GrantTimes(JsonFile(desktop::stateHome() / "tarnwick-bar" / "access-times.json",
                                       JsonRoot::object))),
      access_(callers_, accessStore_, identities_, x11::bringToUser),
      appearance_(bus_),
      service_(board_, callers_, access_, appearance_, x11::isButtonDown, bus_),
      sni_(board_, identities_),
      window_(board_, clock_, appearance_, settings_),
      tray_(board_, window_, identities_),
      activeApplication_(identities_) {
  connect(&settings_, &BarSettings::changed, this, &BarApp::applySettings);
  connect(&service_, &MenuBarService::paneRequested, this, &BarApp::showPane);
  connect(&window_, &BarWindow::frameChanged, this, [this](const QRect& frame) {
    x11::makeDock(window_, frame);
    service_.setFrame(frame);
  });
  connect(&activeApplication_, &x11::ActiveApplication::changed, this,
          [this] { window_.setApplicationName(activeApplication_.name()); });
  applySettings();
}

BarApp::~BarApp() = default;

void BarApp::start() {
  // Clients decide once, as they start, whether there is a host: it comes before anything to see.
  sni_.start();
  service_.setFrame(window_.frame());
  if (!service_.start()) {
    std::fprintf(stderr, "tarnwick-bar: the bar cannot be put on the session bus\n");
  }
  window_.winId();
  x11::makeDock(window_, window_.frame());
  window_.setApplicationName(activeApplication_.name());
  x11::showDock(window_);
  if (!tray_.start()) {
    qWarning("no tray for X11 icons: the X server lacks Composite, Damage or XFixes");
  }
  appearance_.start();
  watchFiles();
  connect(qApp, &QCoreApplication::aboutToQuit, this, &BarApp::putAway);
}

void BarApp::putAway() {
  tray_.shutdown();
  positions_.save();
}

void BarApp::applySettings() {
  const BarOptions& options = settings_.options();
  Metrics::shared().setIconSide(options.iconSide);
  clock_.setFormat(options.clockHours, options.showDate);
}

void BarApp::watchFiles() {
  std::error_code error;
  std::filesystem::create_directories(configFolder(), error);
  files_.addPath(QFile::decodeName(configFolder().c_str()));
  watchFilesAgain();
  // A while later, for whoever writes them in place and not whole.
  rereadTimer_.setSingleShot(true);
  rereadTimer_.setInterval(rereadDelayMs);
  connect(&rereadTimer_, &QTimer::timeout, this, [this] {
    accessStore_.refresh();
    settings_.refresh();
    watchFilesAgain();
  });
  const auto reread = [this] { rereadTimer_.start(); };
  connect(&files_, &QFileSystemWatcher::directoryChanged, this, reread);
  connect(&files_, &QFileSystemWatcher::fileChanged, this, reread);
}

// A file that was replaced is no longer watched: its folder told of that.
void BarApp::watchFilesAgain() {
  for (const auto& path : {accessStore_.path(), settings_.path()}) {
    const QString file = QFile::decodeName(path.c_str());
    if (!files_.files().contains(file) && QFile::exists(file)) files_.addPath(file);
  }
}

void BarApp::showPane(const QString& pane, const QString& caller) {
  const bool isPrivacy = pane == QLatin1String("privacy");
  QPointer<QWidget>& window = isPrivacy ? privacyWindow_ : menuBarPane_;
  if (!window) {
    if (isPrivacy) {
      auto* const privacy = new PrivacyWindow(accessStore_);
      connect(privacy, &PrivacyWindow::askAgainClicked, &access_, &AccessControl::forgetRefusals);
      window = privacy;
    } else {
      window = new MenuBarPane(settings_);
    }
  }
  // A program that asks for access opens this window together with the question.
  const bool asks = isPrivacy && access_.asks(caller);
  window->setAttribute(Qt::WA_ShowWithoutActivating, asks);
  x11::bringToUser(*window);
  if (asks) access_.presentQuestion();
}

}  // namespace tarnwick::bar
