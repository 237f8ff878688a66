#include "utility/desktop_shortcuts/running_desktop.h"

#include <wordexp.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include "common/files/file.h"
#include "utility/desktop_shortcuts/gsettings.h"

namespace tarnwick::shortcuts {

namespace {

constexpr std::size_t largestFile = 1 << 20;
constexpr qsizetype mostCombinations = 4096;
constexpr qsizetype mostFiles = 64;

QByteArray contents(const QString& file) {
  const auto text = desktop::readFile(file.toStdString(), largestFile);
  return text ? QByteArray::fromStdString(*text) : QByteArray();
}

QString locate(const QString& name) {
  return QStandardPaths::locate(QStandardPaths::GenericConfigLocation, name);
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

// i3 reads no file twice.
QByteArray i3Text(const QString& file, QStringList& files) {
  const QString place = QFileInfo(file).canonicalFilePath();
  if (place.isEmpty() || files.contains(place) || files.size() == mostFiles) return {};
  files += place;
  QByteArray text;
  for (const auto& line : contents(place).split('\n')) {
    static const QRegularExpression include("^\\s*include\\s+(\\S.*)$");
    const auto found = include.match(QString::fromUtf8(line));
    if (!found.hasMatch()) {
      text += line + '\n';
      continue;
    }
    QString pattern = found.captured(1).trimmed();
    if (!QString("/~$").contains(pattern[0])) {
      const QString folder = QFileInfo(place).path().replace('\'', "'\\''");
      pattern.prepend('\'' + folder + "/'");
    }
    wordexp_t words{};
    if (wordexp(pattern.toLocal8Bit().constData(), &words, WRDE_NOCMD) == 0) {
      for (std::size_t i = 0; i < words.we_wordc; ++i)
        text += i3Text(QString::fromLocal8Bit(words.we_wordv[i]), files);
    }
    wordfree(&words);
  }
  return text.size() <= static_cast<qsizetype>(largestFile) ? text : QByteArray();
}

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
    QStringList files;
    const QByteArray text = i3Text(file, files);
    add(i3Combinations(text), files);
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
  if (runs("LXQt")) {
    const QString file = locate("lxqt/globalkeyshortcuts.conf");
    add(lxqtCombinations(contents(file)), {file});
  }
  // Their file changes all the time with settings of other kinds: not watched.
  add(readGsettings(desktop.names, stopped), {});
  if (static_cast<qsizetype>(found.combinations.size()) > mostCombinations)
    found.combinations.clear();
  return found;
}

}  // namespace tarnwick::shortcuts
