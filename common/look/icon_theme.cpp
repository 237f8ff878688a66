#include "common/look/icon_theme.h"

#include <QFile>
#include <QIcon>
#include <QSettings>

#include "common/files/json_file.h"

namespace tarnwick {

namespace {

bool isInstalled(const QString& theme) {
  if (theme.isEmpty() || theme.contains(QLatin1Char('/'))) return false;
  for (const QString& folder : QIcon::themeSearchPaths()) {
    if (QFile::exists(folder + QLatin1Char('/') + theme + QStringLiteral("/index.theme"))) {
      return true;
    }
  }
  return false;
}

QString gtkTheme() {
  for (const char* const version : {"gtk-4.0", "gtk-3.0"}) {
    const auto path = desktop::configHome() / version / "settings.ini";
    const QSettings settings(QFile::decodeName(path.c_str()), QSettings::IniFormat);
    const QString theme = settings.value(QStringLiteral("Settings/gtk-icon-theme-name")).toString();
    if (isInstalled(theme)) return theme;
  }
  return {};
}

}  // namespace

void chooseIconTheme() {
  const QString known = QIcon::themeName();
  if (!known.isEmpty() && known != QLatin1String("hicolor")) return;
  QString theme = gtkTheme();
  for (const char* const usual : {"Adwaita", "breeze", "Papirus", "elementary-xfce"}) {
    if (theme.isEmpty() && isInstalled(QLatin1String(usual))) theme = QLatin1String(usual);
  }
  if (!theme.isEmpty()) QIcon::setThemeName(theme);
}

}  // namespace tarnwick
