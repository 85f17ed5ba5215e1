#include "engine/date_serial.h"

#include <cmath>

namespace rubrica {
namespace {

constexpr int kDays1904 = 1462;           // between the epochs of the two date systems
constexpr int kJulianDayBase = 2415019;   // Julian day number of serial 0, 1900 system
constexpr int kSerialBase = 2447094;      // what the civil-to-serial formula takes off
constexpr double kLowest = -657435.0;     // exclusive
constexpr double kHighest = 2958466.0;    // exclusive: 1 January 10000
constexpr double kTimeTolerance = 1e-11;  // lifts times such as 23:59:59.9999 over their boundary

struct CivilDate {
  int year, month, day;
};

CivilDate civilFromSerial(int serial, bool date1904) {
  int l = serial + kJulianDayBase + (date1904 ? kDays1904 : 0) + 68569;
  const int n = (4 * l) / 146097;
  l -= (146097 * n + 3) / 4;
  const int i = (4000 * (l + 1)) / 1461001;
  l = l - (1461 * i) / 4 + 31;
  const int j = (80 * l) / 2447;
  const int day = l - (2447 * j) / 80;
  l = j / 11;
  return {100 * (n - 49) + i + l, j + 2 - 12 * l, day};
}

// Serials 1 to 59 name the days of a 1900 with 29 February; the civil calendar is a day behind there.
void undoFictitiousLeapDay(CivilDate& date) {
  if (date.year == 1900 && date.month < 3) {
    ++date.day;
    if (date.day > 31) {
      date.day = 1;
      ++date.month;
    }
  }
  if (date.year == 1899 && date.month == 12 && date.day == 31) date = {1900, 1, 1};
}

// Takes the whole part of `rest * scale` into `part` and leaves the fraction.
void takePart(double& rest, double scale, int* part) {
  if (part == nullptr) return;
  rest *= scale;
  *part = static_cast<int>(rest);
  rest -= *part;
}

// A thousand milliseconds become a second, and so on up to the day, as far as the parts were asked for.
void carryMilliseconds(int* day, int* hour, int* min, int* sec, int* msec) {
  if (msec == nullptr || *msec != 1000) return;
  *msec = 0;
  if (sec == nullptr || ++*sec != 60) return;
  *sec = 0;
  if (min == nullptr || ++*min != 60) return;
  *min = 0;
  if (hour == nullptr || ++*hour != 24) return;
  *hour = 0;
  if (day != nullptr) ++*day;
}

}  // namespace

double datePack(bool date1904, int year, int month, int day, int hour, int min, int sec, int msec) {
  long long serial = 0;
  if (year >= 1 || month >= 1 || day >= 1) {
    const long long y = year, m = month, a = (m - 14) / 12;
    serial = (1461 * (y + 4800 + a)) / 4 + (367 * (m - 2 - 12 * a)) / 12 - (3 * ((y + 4900 + a) / 100)) / 4 + day -
             kSerialBase;
    if (date1904) serial -= kDays1904;
  }
  return hour / 24.0 + static_cast<double>(serial) + min / 1440.0 + sec / 86400.0 + msec / 86400000.0;
}

bool dateUnpack(bool date1904, double value, int* year, int* month, int* day, int* hour, int* min, int* sec,
                int* msec) {
  if (!(value > kLowest && value < kHighest)) return false;
  const int whole = static_cast<int>(value);
  double fraction = value - whole + kTimeTolerance;
  if (fraction >= 1.0) fraction -= kTimeTolerance;

  CivilDate date{0, 0, 0};
  if (whole > 0) {
    date = civilFromSerial(whole, date1904);
    if (year != nullptr && month != nullptr && day != nullptr) undoFictitiousLeapDay(date);
  }
  if (year != nullptr) *year = date.year;
  if (month != nullptr) *month = date.month;
  if (day != nullptr) *day = date.day;

  double rest = fraction;
  double toMilliseconds = 86400000.0;
  const struct {
    int* part;
    double perDay;
  } parts[] = {{hour, 24.0}, {min, 1440.0}, {sec, 86400.0}};
  double reached = 1.0;
  for (const auto& [part, perDay] : parts) {
    if (part == nullptr) continue;
    takePart(rest, perDay / reached, part);
    reached = perDay;
  }
  // NOLINTNEXTLINE(bugprone-incorrect-roundings): below zero it is cut towards zero, as the day is
  if (msec != nullptr) *msec = static_cast<int>(rest * (toMilliseconds / reached) + 0.5);
  carryMilliseconds(day, hour, min, sec, msec);
  return true;
}

}  // namespace rubrica
