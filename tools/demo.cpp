// The main job on a virtual desktop with real applications of both tray protocols: three of them
// are hidden, one is brought back, the panel is opened, a shortcut is recorded and used. Prints
// every item's place at each step, leaves pictures in the folder given (default "out") and fails
// when an item is not where it should be.

#include <signal.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QTextStream>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "harness/accessible_tree.h"
#include "harness/bar_proxy.h"
#include "harness/private_desktop.h"
#include "harness/wait.h"

using namespace tarnwick::test;

namespace {

volatile sig_atomic_t interrupted = 0;

struct Client {
  QString program;
  QString bundleId;
};

const std::vector<Client> clients = {{"copyq", "com.github.hluk.copyq"},
                                     {"gxkb", "gxkb"},
                                     {"diodon", "diodon"},
                                     {"parcellite", "parcellite"},
                                     {"remmina", "org.remmina.Remmina"},
                                     {"volumeicon", "volumeicon"}};

class Demo {
 public:
  explicit Demo(const QString& folder) : folder_(folder) { QDir().mkpath(folder); }

  int run();

 private:
  bool start();
  // Waits until exactly `hidden` of the applications are out of sight and shows how things stand.
  bool expectHidden(const QString& step, const QStringList& hidden);
  void show(const QString& step);
  void save(const QImage& picture, const QString& name);
  // The pictures taken of hidden items, side by side and enlarged.
  bool showCache();
  bool showPanel(const QString& style);
  bool showSettings();
  bool showShortcuts();
  // Clicks on the recorder in that row of the settings and types into it.
  bool record(const QString& row, const QString& keys);
  void press(const QString& keys) { desktop_.start("xdotool", {"key", keys}).waitForEnd(); }
  bool await(const std::function<bool()>& condition) {
    return waitFor([&] { return interrupted != 0 || condition(); }) && interrupted == 0;
  }

  QTextStream out_{stdout};
  QString folder_;
  PrivateDesktop desktop_;
  std::unique_ptr<BarProxy> bar_;
  std::unique_ptr<AccessibleTree> tree_;
  BarItems last_;
  int step_ = 0;
};

bool Demo::start() {
  if (!desktop_.failure().isEmpty()) {
    out_ << "The virtual desktop does not start: " << desktop_.failure() << Qt::endl;
    return false;
  }
  desktop_.grant(QCoreApplication::applicationFilePath(), {"accessibility"});
  desktop_.grant(PrivateDesktop::pathOf("tarnwick"), {"accessibility", "screen-capture"});
  tree_ = std::make_unique<AccessibleTree>(desktop_);
  desktop_.start("tarnwick-bar");
  bar_ = std::make_unique<BarProxy>(desktop_.bus());
  if (!await([&] { return bar_->running(); })) {
    out_ << "The bar does not start.\n" << desktop_.logs() << Qt::endl;
    return false;
  }
  for (const Client& client : clients) {
    desktop_.start(client.program);
  }
  const bool shown = await([&] {
    return std::all_of(clients.begin(), clients.end(), [&](const Client& client) {
      return !bar_->itemsOf(client.bundleId).empty();
    });
  });
  desktop_.start("tarnwick");
  const bool started = shown && await([&] { return bar_->find("tarnwick.handle").has_value(); });
  if (!started) {
    out_ << "These items came up:\n" << describe(bar_->leftToRight()) << desktop_.logs();
    out_ << "Not every item came up." << Qt::endl;
  }
  return started;
}

void Demo::show(const QString& step) {
  const BarItems items = bar_->leftToRight();
  out_ << "\n" << ++step_ << ". " << step << "\n\n" << describe(items);
  for (const BarItem& item : items) {
    const auto before = std::find_if(last_.begin(), last_.end(),
                                     [&](const BarItem& old) { return old.id == item.id; });
    if (item.kind != "native" && before != last_.end() &&
        (before->centre() > 0) != (item.centre() > 0)) {
      out_ << (item.centre() > 0 ? "  came back:  " : "  left the bar:  ") << item.bundleId
           << QStringLiteral(" from x = %1 to x = %2\n").arg(before->frame.x()).arg(item.frame.x());
    }
  }
  last_ = items;
  save(desktop_.screenshot(), step.section(':', 0, 0));
}

void Demo::save(const QImage& picture, const QString& name) {
  const QString file = QStringLiteral("%1/%2-%3.png")
                           .arg(folder_)
                           .arg(step_)
                           .arg(QString(name).toLower().replace(' ', '-'));
  picture.save(file);
  out_ << "  picture: " << file << Qt::endl;
}

bool Demo::showCache() {
  constexpr int zoom = 4;
  constexpr int side = 60 * zoom;
  const auto files =
      QDir(desktop_.folder("data") + "/Tarnwick/iconcache-2x").entryInfoList({"*.png"});
  out_ << "\n" << ++step_ << ". Pictures of hidden items\n\n";
  QImage sheet(side * std::max(1, static_cast<int>(files.size())), side, QImage::Format_RGB32);
  QPainter painter(&sheet);
  painter.fillRect(sheet.rect(), QBrush(Qt::lightGray));
  painter.fillRect(sheet.rect(), QBrush(Qt::gray, Qt::Dense4Pattern));
  int left = 0;
  for (const QFileInfo& file : files) {
    const QImage picture(file.filePath());
    out_ << QStringLiteral("  %1  %2 x %3 pixels, %4 bytes\n")
                .arg(file.completeBaseName(), -26)
                .arg(picture.width())
                .arg(picture.height())
                .arg(file.size());
    QRect target(QPoint(), picture.size() * zoom);
    target.moveCenter(QRect(left, 0, side, side).center());
    painter.drawImage(target, picture);
    left += side;
  }
  save(sheet, "pictures");
  return !files.isEmpty();
}

bool Demo::showPanel(const QString& style) {
  auto defaults = desktop_.readDefaults();
  defaults["panelIconStyle"] = style.toStdString();
  desktop_.writeDefaults(defaults);
  const auto frame = [&] { return desktop_.windowFrame("Hidden apps"); };
  const bool opened =
      desktop_.activateAction("toggle-panel") && await([&] { return !frame().isEmpty(); });
  out_ << "\n" << ++step_ << ". The panel with the style " << style << "\n\n";
  letPass(std::chrono::milliseconds(300));  // it gets painted
  save(desktop_.screenshot(), "panel-" + style);
  return opened && desktop_.activateAction("toggle-panel") &&
         await([&] { return frame().isEmpty(); });
}

bool Demo::showSettings() {
  desktop_.start("tarnwick");  // a second start opens them
  const bool opened = await([&] { return !desktop_.windowFrame("Tarnwick").isEmpty(); });
  out_ << "\n" << ++step_ << ". The settings\n\n";
  letPass(std::chrono::milliseconds(300));  // they get painted
  save(desktop_.screenshot(), "settings");
  return opened;
}

bool Demo::record(const QString& row, const QString& keys) {
  desktop_.click(scrollToSetting(desktop_, *tree_, row, "text").center());
  const bool recording = await([&] {
    const auto field = tree_->find("tarnwick", row, "text");
    return field && tree_->has(*field, AccessibleTree::State::focused);
  });
  if (recording) press(keys);
  return recording;
}

bool Demo::showShortcuts() {
  const QString row = "Open the panel", taken = "This shortcut is already used by the system.";
  const auto panel = [&](bool shown) {
    return await([&] { return desktop_.windowFrame("Hidden apps").isEmpty() != shown; });
  };
  const bool recorded = record(row, "super+Down") && await([&] {
                          const auto field = tree_->find("tarnwick", row, "text");
                          return field && field->text == QStringLiteral("⌘↓");
                        });
  out_ << "\n" << ++step_ << ". Super + Down recorded for the panel, and pressed\n\n";
  press("super+Down");
  const bool opened = recorded && panel(true);
  letPass(std::chrono::milliseconds(300));  // it gets painted
  save(desktop_.screenshot(), "shortcut");
  press("super+Down");
  const bool worked = opened && panel(false);

  const bool warned = worked && record("Show everything briefly", "alt+F4") &&
                      await([&] { return tree_->find("tarnwick", taken, "dialog").has_value(); });
  out_ << "\n" << ++step_ << ". Alt + F4, which is the window manager's\n\n";
  letPass(std::chrono::milliseconds(300));
  save(desktop_.screenshot(), "shortcut-taken");
  return warned;
}

bool Demo::expectHidden(const QString& step, const QStringList& hidden) {
  const double right = bar_->frame().right();
  BarItems misplaced;
  const bool reached = await([&] {
    misplaced = bar_->items();
    const bool listed = std::all_of(clients.begin(), clients.end(), [&](const Client& client) {
      return std::any_of(misplaced.begin(), misplaced.end(),
                         [&](const BarItem& item) { return item.bundleId == client.bundleId; });
    });
    std::erase_if(misplaced, [&](const BarItem& item) {
      const bool shouldHide = hidden.contains(item.bundleId);
      const bool inside = item.centre() > 0 && item.centre() < right;
      return item.hint == "tarnwick.boundary" ||
             (shouldHide ? item.centre() <= 0 : inside && item.frame.left() >= 0);
    });
    return listed && misplaced.empty();
  });
  show(step);
  if (!reached) {
    out_ << "NOT where they should be:\n" << describe(misplaced) << desktop_.logs() << Qt::endl;
  }
  return reached;
}

int Demo::run() {
  QElapsedTimer timer;
  timer.start();
  if (!start() || !expectHidden("Before: everything is in the bar", {})) {
    return 1;
  }
  const QString first = clients[0].bundleId;   // a StatusNotifierItem
  const QString second = clients[3].bundleId;  // an XEmbed icon
  const QString third = clients[4].bundleId;   // known by a menu entry that starts a script
  const auto hide = [&](const QString& id) { return desktop_.activateAction("hide", id); };
  const auto release = [&](const QString& id) { return desktop_.activateAction("release", id); };
  // One after the other: a pass that is asked for during a pass is dropped.
  const bool done = hide(first) && expectHidden("One hidden: " + first, {first}) && hide(second) &&
                    expectHidden("Two hidden: " + first + " and " + second, {first, second}) &&
                    hide(third) && expectHidden("Three hidden: " + third, {first, second, third}) &&
                    release(first) && expectHidden("Released: " + first, {second, third}) &&
                    hide(first) && expectHidden("Hidden again: " + first, {first, second, third}) &&
                    showCache() && showPanel("statusIcon") && showPanel("appIcon") &&
                    showSettings() && showShortcuts();
  if (interrupted != 0) {
    out_ << "\nInterrupted." << Qt::endl;
    return 130;
  }
  out_ << (done ? "\nEvery item is where it should be. " : "\nFAILED. ")
       << QStringLiteral("%1 s.").arg(static_cast<double>(timer.elapsed()) / 1000, 0, 'f', 1)
       << Qt::endl;
  return done ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  struct sigaction action = {};
  action.sa_handler = [](int) { interrupted = 1; };
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    sigaction(number, &action, nullptr);
  }
  return Demo(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("out")).run();
}
