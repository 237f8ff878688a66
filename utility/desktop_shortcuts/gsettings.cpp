#include "utility/desktop_shortcuts/gsettings.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace tarnwick::shortcuts {

namespace {

constexpr qsizetype longestOutput = 1 << 20;
constexpr int deadline = 3000;  // ms for all that is asked
constexpr int mostOwnBindings = 64;

// Where a desktop keeps its shortcuts. Those that the user has made are in folders of their own.
struct Settings {
  QStringList schemas;
  QStringList ownNames;     // a command that prints the names or the paths of these folders
  QString ownFolder;        // above those that are only named
  QString ownSchema;        // of such a folder; its "binding" is a combination or a list of them
  QStringList likelyNames;  // where that command is not there
};

class Programs {
 public:
  explicit Programs(const std::atomic<bool>& stopped) : stopped_(stopped) {}

  // Empty when it fails, says too much or takes too long.
  QByteArray operator()(const QStringList& command) {
    QProcess process;
    process.start(command[0], command.mid(1), QIODevice::ReadOnly);
    QByteArray output;
    bool ended = !process.waitForStarted(static_cast<int>(deadline_.remainingTime()));
    while (!ended && !stopped_ && !deadline_.hasExpired() && output.size() <= longestOutput) {
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
  QDeadlineTimer deadline_{deadline};
};

bool exists(const QString& program) {
  return !QStandardPaths::findExecutable(program).isEmpty();
}

Settings settingsOf(const QStringList& names) {
  if (names.contains("X-Cinnamon") || names.contains("Cinnamon")) {
    const QString root = "org.cinnamon.desktop.keybindings";
    return {{root, root + ".wm", root + ".media-keys"},
            {"gsettings", "get", root, "custom-list"},
            "/org/cinnamon/desktop/keybindings/custom-keybindings/",
            root + ".custom-keybinding",
            {}};
  }
  if (names.contains("MATE")) {
    const QString folder = "/org/mate/desktop/keybindings/";
    QStringList likely;
    for (int i = 0; i < 16; ++i) likely += "custom" + QString::number(i);
    return {{"org.mate.Marco.global-keybindings", "org.mate.Marco.window-keybindings",
             "org.mate.SettingsDaemon.plugins.media-keys"},
            {"dconf", "list", folder},
            folder,
            "org.mate.control-center.keybinding",
            likely};
  }
  if (names.contains("GNOME")) {
    const QString media = "org.gnome.settings-daemon.plugins.media-keys";
    return {{"org.gnome.desktop.wm.keybindings", "org.gnome.shell.keybindings",
             "org.gnome.mutter.keybindings", media},
            {"gsettings", "get", media, "custom-keybindings"},
            {},
            media + ".custom-keybinding",
            {}};
  }
  return {};
}

}  // namespace

Combinations readGsettings(const QStringList& names, const std::atomic<bool>& stopped) {
  const Settings settings = settingsOf(names);
  if (settings.schemas.isEmpty() || !exists("gsettings")) return {};
  Programs run(stopped);
  const auto known = run({"gsettings", "list-schemas"}).split('\n');
  QByteArray lines;
  for (const auto& schema : settings.schemas) {
    if (known.contains(schema.toUtf8()))
      lines += run({"gsettings", "list-recursively", schema}) + '\n';
  }
  QStringList own = settings.likelyNames;
  if (exists(settings.ownNames[0])) {
    static const QRegularExpression separators("[\\s',\\[\\]]+");
    own = QString::fromUtf8(run(settings.ownNames)).split(separators, Qt::SkipEmptyParts);
  }
  for (auto& name : own.mid(0, mostOwnBindings)) {
    if (name == "@as") continue;  // the type of an empty list
    if (!name.startsWith('/')) name.prepend(settings.ownFolder);
    if (!name.endsWith('/')) name += '/';
    lines +=
        "- binding " + run({"gsettings", "get", settings.ownSchema + ':' + name, "binding"}) + '\n';
  }
  return gsettingsCombinations(lines);
}

}  // namespace tarnwick::shortcuts
