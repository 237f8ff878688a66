#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

namespace tarnwick {

// Light or dark, as the desktop wants it: the settings portal's colour scheme where there is one,
// else the lightness of the toolkit's palette. Every window and menu of the program follows. Needs
// a QApplication; one per program.
class Appearance : public QObject {
  Q_OBJECT

 public:
  explicit Appearance(QDBusConnection bus, QObject* parent = nullptr);

  bool isDark() const { return dark_; }
  QColor ground() const;      // of the bar
  QColor foreground() const;  // of its text and of template pictures
  QColor hairline() const;    // along its lower edge

  // Asks the portal, if it runs, and follows it and the toolkit from then on. Never starts it.
  void start();

  bool eventFilter(QObject* watched, QEvent* event) override;

 signals:
  void changed();

 private slots:
  void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);
  void portalOwnerChanged(const QString& name, const QString& before, const QString& after);

 private:
  enum class Scheme : std::uint8_t { none, dark, light };

  void askPortal(const QString& method);
  void take(Scheme scheme);
  void paletteChanged();
  void update();

  QDBusConnection bus_;
  Scheme scheme_ = Scheme::none;
  QPalette desktopPalette_;  // what the toolkit gave
  bool dark_ = false;
  bool replaced_ = false;  // the application's palette is one of ours
};

}  // namespace tarnwick
