#pragma once

#include <QString>

namespace tarnwick::bar {

// The file of icon `name` (perhaps with its suffix) in a folder of an item's own: in the folder
// itself or in an icon theme's tree below it, for a height of `side` pixels. Empty when there is
// none.
QString findIconFile(const QString& folder, const QString& name, int side);

// `path` itself when there is such a file, else with an icon file's suffix, else the same below the
// root of process `pid`, which may be another one; empty when there is none.
QString existingIconFile(const QString& path, qint32 pid = 0);

// `path` as this process sees it: itself when it exists, else below the root of process `pid`.
QString visibleFolder(const QString& path, qint32 pid);

}  // namespace tarnwick::bar
