#include "bar/window/clock.h"

#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <QDateTime>
#include <QLocale>

namespace tarnwick::bar {

QString clockText(const QDateTime& now, const QLocale& locale, ClockHours hours, bool date) {
  const bool localeHasTwelve =
      locale.timeFormat(QLocale::ShortFormat).contains(QLatin1Char('a'), Qt::CaseInsensitive);
  const bool twelve =
      hours == ClockHours::twelve || (hours == ClockHours::locale && localeHasTwelve);
  const QString time =
      locale.toString(now.time(), twelve ? QStringLiteral("h:mm AP") : QStringLiteral("HH:mm"));
  if (!date) return time;
  const QString usual = locale.dateFormat(QLocale::ShortFormat);
  const bool monthFirst = usual.indexOf(QLatin1Char('M')) < usual.indexOf(QLatin1Char('d'));
  const QString day = monthFirst ? QStringLiteral("ddd MMM d") : QStringLiteral("ddd d MMM");
  return locale.toString(now.date(), day) + QStringLiteral("   ") + time;
}

Clock::Clock(QObject* parent)
    : QObject(parent),
      timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      notifier_(timer_.get(), QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, [this] {
    quint64 expirations = 0;
    // Fails when the time was set meanwhile: then too the clock has to be looked at.
    [[maybe_unused]] const auto count = read(timer_.get(), &expirations, sizeof expirations);
    armForNextMinute();
    update();
  });
  armForNextMinute();
  update();
}

void Clock::setFormat(ClockHours hours, bool date) {
  hours_ = hours;
  date_ = date;
  update();
}

void Clock::armForNextMinute() {
  itimerspec next = {};
  next.it_value.tv_sec = (time(nullptr) / 60 + 1) * 60;
  timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &next, nullptr);
}

void Clock::update() {
  const QString text = clockText(QDateTime::currentDateTime(), QLocale::system(), hours_, date_);
  if (text == text_) return;
  text_ = text;
  emit changed();
}

}  // namespace tarnwick::bar
