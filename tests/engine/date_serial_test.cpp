#include "engine/date_serial.h"

#include <limits>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

struct Parts {
  int year = -1, month = -1, day = -1, hour = -1, min = -1, sec = -1, msec = -1;
  bool operator==(const Parts&) const = default;
};

Parts unpack(double value, bool date1904 = false) {
  Parts p;
  EXPECT_TRUE(dateUnpack(date1904, value, &p.year, &p.month, &p.day, &p.hour, &p.min, &p.sec, &p.msec));
  return p;
}

void PrintTo(const Parts& p, std::ostream* out) {
  *out << p.year << '-' << p.month << '-' << p.day << ' ' << p.hour << ':' << p.min << ':' << p.sec << '.' << p.msec;
}

TEST(DatePacking, KnowsDaysOfTheCivilCalendar) {
  EXPECT_EQ(datePack(false, 2026, 11, 20, 0, 0, 0, 0), 46346.0);
  EXPECT_EQ(datePack(false, 1900, 3, 1, 0, 0, 0, 0), 61.0);
  EXPECT_EQ(datePack(false, 2000, 2, 29, 0, 0, 0, 0), 36585.0);
  EXPECT_EQ(datePack(false, 9999, 12, 31, 0, 0, 0, 0), 2958465.0);
}

TEST(DatePacking, DaysBeforeMarch1900AreNotCorrectedForTheFictitiousLeapDay) {
  EXPECT_EQ(datePack(false, 1900, 1, 1, 0, 0, 0, 0), 2.0);
  EXPECT_EQ(datePack(false, 1900, 2, 28, 0, 0, 0, 0), 60.0);
}

TEST(DatePacking, TimesAloneAreFractionsOfADay) {
  EXPECT_EQ(datePack(false, 0, 0, 0, 12, 0, 0, 0), 0.5);
  EXPECT_EQ(datePack(true, 0, 0, 0, 6, 0, 0, 0), 0.25);
  EXPECT_DOUBLE_EQ(datePack(false, 2026, 11, 20, 18, 30, 15, 500), 46346 + (18 * 3600 + 30 * 60 + 15.5) / 86400.0);
}

TEST(DatePacking, The1904SystemIs1462DaysBehind) {
  EXPECT_EQ(datePack(true, 2026, 11, 20, 0, 0, 0, 0), 46346.0 - 1462);
  EXPECT_EQ(unpack(46346.0 - 1462, true), (Parts{2026, 11, 20, 0, 0, 0, 0}));
}

TEST(DatePacking, PackAndUnpackAgreeForEveryDayFromMarch1900) {
  for (int serial = 61; serial < 2958466; serial += 37) {
    const Parts p = unpack(serial);
    ASSERT_EQ(datePack(false, p.year, p.month, p.day, 0, 0, 0, 0), serial) << serial;
  }
}

TEST(DateUnpacking, JanuaryAndFebruary1900AreLiftedByTheMissingLeapDay) {
  EXPECT_EQ(unpack(1.0), (Parts{1900, 1, 1, 0, 0, 0, 0}));
  EXPECT_EQ(unpack(31.0), (Parts{1900, 1, 31, 0, 0, 0, 0}));
  EXPECT_EQ(unpack(32.0), (Parts{1900, 2, 1, 0, 0, 0, 0}));
  EXPECT_EQ(unpack(60.0), (Parts{1900, 2, 29, 0, 0, 0, 0}));
  EXPECT_EQ(unpack(61.0), (Parts{1900, 3, 1, 0, 0, 0, 0}));
}

TEST(DateUnpacking, RoundsUpThroughTheMillisecondIntoTheNextDay) {
  EXPECT_EQ(unpack(1.99999999999).day, unpack(1.0).day + 1);
  EXPECT_EQ(unpack(1.99999999999).hour, 0);
  EXPECT_EQ(unpack(46346.999999999), (Parts{2026, 11, 21, 0, 0, 0, 0}));
}

TEST(DateUnpacking, TimesAloneHaveNoDate) {
  EXPECT_EQ(unpack(0.75), (Parts{0, 0, 0, 18, 0, 0, 0}));
  EXPECT_EQ(unpack(-5.0), (Parts{0, 0, 0, 0, 0, 0, 0}));
}

TEST(DateUnpacking, GivesMillisecondsBack) {
  const double value = datePack(false, 2026, 11, 20, 23, 59, 58, 987);
  EXPECT_EQ(unpack(value), (Parts{2026, 11, 20, 23, 59, 58, 987}));
}

TEST(DateUnpacking, FailsAtAndBeyondItsBounds) {
  int year = 7;
  for (const double value : {-657435.0, -1e300, 2958466.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(dateUnpack(false, value, &year, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr)) << value;
  }
  EXPECT_EQ(year, 7);
  EXPECT_TRUE(dateUnpack(false, 2958465.0, &year, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_TRUE(dateUnpack(false, -657434.0, &year, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
}

TEST(DateUnpacking, EveryOutArgumentMayBeNull) {
  EXPECT_TRUE(dateUnpack(false, 46346.5, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
  int minutes = 0;
  EXPECT_TRUE(dateUnpack(false, 46346.5, nullptr, nullptr, nullptr, nullptr, &minutes, nullptr, nullptr));
  EXPECT_EQ(minutes, 12 * 60);
}

}  // namespace
}  // namespace rubrica
