#include "bar/sni/icon_files.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QIcon>
#include <QStringList>
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace tarnwick::bar {

namespace {

constexpr int maximumFolders = 64;
constexpr int maximumPlaces = 120;  // of one look-up; four files each

// "22x22", "22x22@2", "22"; 0 for "scalable"; absent (-1) for what is no folder of a size.
int sizeOf(const QString& folder) {
  if (folder == QLatin1String("scalable") || folder == QLatin1String("symbolic")) return 0;
  const QStringList parts = folder.split(u'@');
  bool ok = false;
  const int size = parts[0].section(u'x', 0, 0).toInt(&ok);
  const int scale = parts.size() > 1 ? QStringView(parts[1]).left(1).toInt() : 1;
  return ok && size > 0 ? size * std::max(1, scale) : -1;
}

QStringList subfolders(const QString& folder) {
  QStringList names;
  QDirIterator entries(folder, QDir::Dirs | QDir::NoDotAndDotDot);
  for (int i = 0; i < maximumFolders && entries.hasNext(); ++i) {
    entries.next();
    names << entries.fileName();
  }
  names.sort();
  return names;
}

// Folders of sizes, the best one for `side` first.
QStringList sizeFolders(const QString& tree, int side) {
  std::vector<std::pair<int, QString>> ranked;
  const QStringList folders = subfolders(tree);
  for (const QString& folder : folders) {
    const int size = sizeOf(folder);
    if (size < 0) continue;
    const int rank = size == 0 ? 0 : size >= side ? size - side : 10'000 + side - size;
    ranked.emplace_back(rank, tree + u'/' + folder);
  }
  std::sort(ranked.begin(), ranked.end());
  QStringList result;
  for (auto& [rank, folder] : ranked) result << std::move(folder);
  return result;
}

QString underRoot(qint32 pid, const QString& path) {
  return QStringLiteral("/proc/%1/root%2").arg(pid).arg(path);
}

}  // namespace

QString existingIconFile(const QString& path, qint32 pid) {
  for (const char* suffix : {"", ".svg", ".png", ".xpm"}) {
    const QString candidate = path + QLatin1String(suffix);
    if (QFileInfo(candidate).isFile()) return candidate;
  }
  return pid > 0 ? existingIconFile(underRoot(pid, path)) : QString();
}

QString visibleFolder(const QString& path, qint32 pid) {
  if (!path.startsWith(u'/')) return {};
  return pid > 0 && !QFileInfo(path).isDir() ? underRoot(pid, path) : path;
}

QString findIconFile(const QString& folder, const QString& name, int side) {
  if (folder.isEmpty() || name.isEmpty() || name.contains(u'/')) return {};
  QString found = existingIconFile(folder + u'/' + name);
  if (!found.isEmpty()) return found;
  int places = maximumPlaces;
  for (const QString& base : {folder, folder + QStringLiteral("/icons")}) {
    for (const QString& theme : {QIcon::themeName(), QStringLiteral("hicolor"), QString()}) {
      const QString tree = theme.isEmpty() ? base : base + u'/' + theme;
      const QStringList sizes = sizeFolders(tree, side);
      for (const QString& size : sizes) {
        if (--places < 0) return {};
        const QStringList contexts = subfolders(size);
        for (const QString& context : contexts) {
          if (--places < 0) return {};
          found = existingIconFile(size + u'/' + context + u'/' + name);
          if (!found.isEmpty()) return found;
        }
        found = existingIconFile(size + u'/' + name);
        if (!found.isEmpty()) return found;
      }
    }
  }
  return {};
}

}  // namespace tarnwick::bar
