#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QObject>
#include <QPalette>

class QDBusVariant;

namespace tarnwick::bar {

// Light or dark, as the desktop wants it: the settings portal's colour scheme where there is one,
// else the lightness of the toolkit's palette. The bar's windows and menus follow.
class Appearance : public QObject {
  Q_OBJECT

 public:
  explicit Appearance(QDBusConnection bus, QObject* parent = nullptr);

  bool isDark() const { return dark_; }
  QColor ground() const;      // of the bar
  QColor foreground() const;  // of its text and of template pictures
  QColor hairline() const;    // along its lower edge

  // Asks the portal, if it runs, and follows it from then on. Never starts it.
  void start();
  // The toolkit's palette is another one now.
  void paletteChanged();

 signals:
  void changed();

 private slots:
  void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);
  void portalOwnerChanged(const QString& name, const QString& before, const QString& after);

 private:
  enum class Scheme : std::uint8_t { none, dark, light };

  void askPortal(const QString& method);
  void take(Scheme scheme);
  void update();

  QDBusConnection bus_;
  Scheme scheme_ = Scheme::none;
  QPalette desktopPalette_;  // what the toolkit gave
  bool dark_ = false;
  bool replaced_ = false;  // the application's palette is one of ours
};

}  // namespace tarnwick::bar
