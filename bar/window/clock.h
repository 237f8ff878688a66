#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include "bar/settings/bar_settings.h"
#include "common/files/file.h"

namespace tarnwick::bar {

// The bar's clock. Wakes up once a minute, at its beginning, and when the system's time is set or
// the machine comes back from sleep.
class Clock : public QObject {
  Q_OBJECT

 public:
  explicit Clock(QObject* parent = nullptr);

  const QString& text() const { return text_; }
  void setFormat(ClockHours hours, bool date);

 signals:
  void changed();  // text() differs

 private:
  void armForNextMinute();
  void update();

  desktop::UniqueFd timer_;
  QSocketNotifier notifier_;
  ClockHours hours_ = ClockHours::locale;
  bool date_ = false;
  QString text_;
};

// The clock's text in the system's language, without seconds.
QString clockText(const QDateTime& now, const QLocale& locale, ClockHours hours, bool date);

}  // namespace tarnwick::bar
