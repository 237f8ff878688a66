#include "bar/window/clock.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include "harness/desktop_test.h"

namespace tarnwick::bar {
namespace {

TEST(Clock, WritesDayAndHoursAsTheRegionDoes) {
  const QDateTime afternoon(QDate(2026, 3, 9), QTime(14, 5));
  const struct {
    const char* locale;
    ClockHours hours;
    bool date;
    const char* text;
  } cases[] = {
      {"en_US", ClockHours::locale, true, "Mon Mar 9   2:05 PM"},
      {"en_GB", ClockHours::locale, true, "Mon 9 Mar   14:05"},
      {"en_US", ClockHours::twentyFour, false, "14:05"},
      {"en_GB", ClockHours::twelve, false, "2:05 PM"},
      {"ja_JP", ClockHours::locale, true, "月 3月 9   14:05"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(clockText(afternoon, QLocale(one.locale), one.hours, one.date), one.text)
        << one.locale;
  }
}

}  // namespace
}  // namespace tarnwick::bar
