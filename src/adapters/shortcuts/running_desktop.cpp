#include "adapters/shortcuts/running_desktop.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "adapters/desktop/file.h"

namespace tarnwick::shortcuts {

namespace {

constexpr std::size_t largestFile = 1 << 20;
constexpr qsizetype mostCombinations = 4096;
constexpr int programDeadline = 3000;  // ms for all that is asked of one program
constexpr int mostOwnBindings = 64;

QByteArray contents(const QString& file) {
  const auto text = desktop::readFile(file.toStdString(), largestFile);
  return text ? QByteArray::fromStdString(*text) : QByteArray();
}

QString locate(const QString& name) {
  return QStandardPaths::locate(QStandardPaths::GenericConfigLocation, name);
}

class Gsettings {
 public:
  explicit Gsettings(const std::atomic<bool>& stopped) : stopped_(stopped) {}

  // Empty when it fails, says too much or takes too long.
  QByteArray operator()(const QStringList& arguments) {
    QProcess process;
    process.start("gsettings", arguments, QIODevice::ReadOnly);
    QByteArray output;
    bool ended = !process.waitForStarted();
    while (!ended && !stopped_ && !deadline_.hasExpired() &&
           output.size() <= static_cast<qsizetype>(largestFile)) {
      ended = process.waitForFinished(50) || process.state() == QProcess::NotRunning;
      output += process.readAllStandardOutput();
    }
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
      return output;
    process.kill();
    process.waitForFinished(100);
    return {};
  }

 private:
  const std::atomic<bool>& stopped_;
  QDeadlineTimer deadline_{programDeadline};
};

Combinations readGsettings(const QStringList& schemas, const std::atomic<bool>& stopped) {
  if (QStandardPaths::findExecutable("gsettings").isEmpty()) return {};
  static const QRegularExpression ownPath("'(/org/[^']*/custom-keybindings/[^']*)'");
  Gsettings gsettings(stopped);
  const auto known = gsettings({"list-schemas"}).split('\n');
  QByteArray lines;
  for (const auto& schema : schemas) {
    if (known.contains(schema.toUtf8())) lines += gsettings({"list-recursively", schema});
  }
  auto own = ownPath.globalMatch(QString::fromUtf8(lines));
  for (int i = 0; i < mostOwnBindings && own.hasNext(); ++i) {
    lines += "\n- binding " + gsettings({"get",
                                         "org.gnome.settings-daemon.plugins.media-keys."
                                         "custom-keybinding:" +
                                             own.next().captured(1),
                                         "binding"});
  }
  return gsettingsCombinations(lines);
}

QString openboxFile(const RunningDesktop& desktop) {
  if (!desktop.openboxFile.isEmpty()) return desktop.openboxFile;
  QStringList names{"openbox/rc.xml"};
  if (desktop.names.contains("LXQt")) names.prepend("openbox/lxqt-rc.xml");
  if (desktop.names.contains("LXDE")) names.prepend("openbox/lxde-rc.xml");
  for (const auto& name : names) {
    const QString file = locate(name);
    if (!file.isEmpty()) return file;
  }
  return {};
}

}  // namespace

Configuration readConfiguration(const RunningDesktop& desktop, const std::atomic<bool>& stopped) {
  Configuration found;
  const auto runs = [&](const char* name) { return desktop.names.contains(name); };
  const QString& manager = desktop.windowManager;
  const auto add = [&](const Combinations& more, const QStringList& files) {
    found.combinations.insert(found.combinations.end(), more.begin(), more.end());
    for (const auto& file : files) {
      if (!file.isEmpty()) found.files += file;
    }
  };
  if (manager == "Openbox") {
    const QString file = openboxFile(desktop);
    add(openboxCombinations(contents(file)), {file});
  } else if (manager == "i3") {
    const QString own = QDir::homePath() + "/.i3/config";
    QString file = locate("i3/config");
    if (file.isEmpty()) file = QFile::exists(own) ? own : "/etc/i3/config";
    add(i3Combinations(contents(file)), {file});
  }
  if (runs("KDE") || manager == "KWin") {
    const QString file = locate("kglobalshortcutsrc");
    add(kdeCombinations(contents(file)), {file});
  }
  if (runs("XFCE")) {
    const auto files =
        QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation,
                                  "xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml");
    add(xfceCombinations(contents(files.value(0)), contents(files.value(1))), files.mid(0, 2));
  }
  QStringList schemas;
  if (runs("X-Cinnamon") || runs("Cinnamon")) {
    schemas = {"org.cinnamon.desktop.keybindings.wm", "org.cinnamon.desktop.keybindings.media-keys",
               "org.cinnamon.desktop.keybindings"};
  } else if (runs("MATE")) {
    schemas = {"org.mate.Marco.global-keybindings", "org.mate.Marco.window-keybindings",
               "org.mate.SettingsDaemon.plugins.media-keys"};
  } else if (runs("GNOME")) {
    schemas = {"org.gnome.desktop.wm.keybindings", "org.gnome.shell.keybindings",
               "org.gnome.mutter.keybindings", "org.gnome.settings-daemon.plugins.media-keys"};
  }
  if (!schemas.isEmpty()) add(readGsettings(schemas, stopped), {locate("dconf/user")});
  if (static_cast<qsizetype>(found.combinations.size()) > mostCombinations)
    found.combinations.clear();
  return found;
}

}  // namespace tarnwick::shortcuts
