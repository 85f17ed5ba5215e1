#include <algorithm>
#include <array>

#include "simhost/functions.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

using Args = std::span<const Value>;

// The numbers behind kYear and its fellows.
enum class Unit { Year = 1, Quarter, Month, Week, Day, Hour, Minute, Second, Hundredth, DayOfWeek, DayOfYear };

constexpr std::int64_t hundredthsPerSecond = 100;

Unit unitOf(const Value& value) {
  const std::int64_t code = value.toInteger();
  if (code < static_cast<int>(Unit::Year) || code > static_cast<int>(Unit::DayOfYear)) {
    throw ScriptError(
        "The unit of a date function is one of kYear, kQuarter, kMonth, kWeek, kDay, kHour, kMinute, "
        "kSecond, kCentiSecond, kDayofWeek, kDayofYear");
  }
  return static_cast<Unit>(code);
}

int bounded(const Value& value) {
  return static_cast<int>(std::clamp<std::int64_t>(value.toInteger(), -1, 100000));
}

// date(year, month, day [, hour, minute [, second [, hundredth]]]); a day that doesn't exist is an error.
Value makeDate(Args a) {
  DateTime date;
  date.year = bounded(a[0]);
  date.month = bounded(a[1]);
  date.day = bounded(a[2]);
  date.hasDate = true;
  date.hasTime = a.size() > 3;
  date.hasSeconds = a.size() > 5;
  date.hasHundredths = a.size() > 6;
  if (a.size() > 3) date.hour = bounded(a[3]);
  if (a.size() > 4) date.minute = bounded(a[4]);
  if (a.size() > 5) date.second = bounded(a[5]);
  if (a.size() > 6) date.hundredth = bounded(a[6]);
  date.subtype = date.hasTime ? dateAndTime : shortDate;
  const auto within = [](int value, int end) { return value >= 0 && value < end; };
  if (!isValidDate(date.year, date.month, date.day) || !within(date.hour, 24) || !within(date.minute, 60) ||
      !within(date.second, 60) || !within(date.hundredth, 100)) {
    throw ScriptError("There is no such date");
  }
  return Value::date(date);
}

Value dat(Args a) {
  const DateTime date = a[0].toDate();
  if (a.size() < 2) return Value::date(date);
  return Value::utf8(formatDate(date, a[1].toUtf8()));
}

Value tim(Args a) {
  const DateTime time = dateAsSubtype(a[0].toDate(), shortTime);
  if (a.size() < 2) return Value::date(time);
  return Value::utf8(formatDate(time, a[1].toUtf8()));
}

Value addMonths(DateTime date, std::int64_t months) {
  constexpr std::int64_t farthest = 12 * 10000;
  const std::int64_t total = date.year * 12LL + date.month - 1 + std::clamp(months, -farthest, farthest);
  date.year = static_cast<int>(total / 12);
  date.month = static_cast<int>(total % 12) + 1;
  if (total < 12 || date.year > 9999) throw ScriptError("The date lies outside of the years 1 to 9999");
  date.day = std::min(date.day, daysInMonth(date.year, date.month));
  return Value::date(date);
}

Value addHundredths(const DateTime& date, std::int64_t amount, std::int64_t unit) {
  constexpr std::int64_t farthest = hundredthsPerDay * 366 * 10000;
  amount = std::clamp(amount, -farthest / unit, farthest / unit) * unit;
  DateTime shape = date;
  if (amount % hundredthsPerDay != 0 && !date.hasTime) {
    shape.hasTime = true;
    shape.subtype = dateAndTime;
  }
  shape.hasSeconds = shape.hasSeconds || amount % (60 * hundredthsPerSecond) != 0;
  shape.hasHundredths = shape.hasHundredths || amount % hundredthsPerSecond != 0;
  const DateTime result = dateFromHundredths(hundredthsOf(date) + amount, shape);
  if (result.hasDate && !isValidDate(result.year, result.month, result.day)) {
    throw ScriptError("The date lies outside of the years 1 to 9999");
  }
  return Value::date(result);
}

// dadd(kDay, 30, date)
Value dadd(Args a) {
  const std::int64_t count = a[1].toInteger();
  const DateTime date = a[2].toDate();
  if (date.empty()) return a[2];
  constexpr std::int64_t farthestYears = 10000;
  const auto months = [&](std::int64_t each) {
    return addMonths(date, std::clamp(count, -farthestYears, farthestYears) * each);
  };
  switch (unitOf(a[0])) {
    case Unit::Year:
      return months(12);
    case Unit::Quarter:
      return months(3);
    case Unit::Month:
      return addMonths(date, count);
    case Unit::Week:
      return addHundredths(date, count, 7 * hundredthsPerDay);
    case Unit::Day:
    case Unit::DayOfWeek:
    case Unit::DayOfYear:
      return addHundredths(date, count, hundredthsPerDay);
    case Unit::Hour:
      return addHundredths(date, count, 3600 * hundredthsPerSecond);
    case Unit::Minute:
      return addHundredths(date, count, 60 * hundredthsPerSecond);
    case Unit::Second:
      return addHundredths(date, count, hundredthsPerSecond);
    case Unit::Hundredth:
      return addHundredths(date, count, 1);
  }
  return {};
}

// Whole months from the first date to the second.
std::int64_t monthsBetween(const DateTime& from, const DateTime& to) {
  std::int64_t months = (to.year - from.year) * 12LL + to.month - from.month;
  const auto restOf = [](const DateTime& date) {
    return date.day * hundredthsPerDay + ((date.hour * 60LL + date.minute) * 60 + date.second) * hundredthsPerSecond +
           date.hundredth;
  };
  if (months > 0 && restOf(to) < restOf(from)) --months;
  if (months < 0 && restOf(to) > restOf(from)) ++months;
  return months;
}

// ddiff(kDay, from, to): whole units from the first date to the second.
Value ddiff(Args a) {
  const DateTime from = a[1].toDate();
  const DateTime to = a[2].toDate();
  if (from.empty() || to.empty()) return Value::null();
  const std::int64_t difference = hundredthsOf(to) - hundredthsOf(from);
  switch (unitOf(a[0])) {
    case Unit::Year:
      return Value::integer(monthsBetween(from, to) / 12);
    case Unit::Quarter:
      return Value::integer(monthsBetween(from, to) / 3);
    case Unit::Month:
      return Value::integer(monthsBetween(from, to));
    case Unit::Week:
      return Value::integer(difference / (7 * hundredthsPerDay));
    case Unit::Day:
    case Unit::DayOfWeek:
    case Unit::DayOfYear:
      return Value::integer(difference / hundredthsPerDay);
    case Unit::Hour:
      return Value::integer(difference / (3600 * hundredthsPerSecond));
    case Unit::Minute:
      return Value::integer(difference / (60 * hundredthsPerSecond));
    case Unit::Second:
      return Value::integer(difference / hundredthsPerSecond);
    case Unit::Hundredth:
      return Value::integer(difference);
  }
  return {};
}

Value dpart(Args a) {
  const DateTime date = a[1].toDate();
  if (date.empty()) return Value::null();
  const Unit unit = unitOf(a[0]);
  const bool ofTime = unit >= Unit::Hour && unit <= Unit::Hundredth;
  if (!ofTime && !date.hasDate) return Value::null();
  switch (unit) {
    case Unit::Year:
      return Value::integer(date.year);
    case Unit::Quarter:
      return Value::integer((date.month + 2) / 3);
    case Unit::Month:
      return Value::integer(date.month);
    case Unit::Week:
      return Value::integer((dayOfYear(date) + 6 - weekday(date)) / 7 + 1);
    case Unit::Day:
      return Value::integer(date.day);
    case Unit::Hour:
      return Value::integer(date.hour);
    case Unit::Minute:
      return Value::integer(date.minute);
    case Unit::Second:
      return Value::integer(date.second);
    case Unit::Hundredth:
      return Value::integer(date.hundredth);
    case Unit::DayOfWeek:
      return Value::integer(weekday(date));
    case Unit::DayOfYear:
      return Value::integer(dayOfYear(date));
  }
  return {};
}

// dname(kMonth, date) and dname(kDay, date): "November", "Friday".
Value dname(Args a) {
  const DateTime date = a[1].toDate();
  if (!date.hasDate) return Value::text(Text());
  switch (unitOf(a[0])) {
    case Unit::Month:
      return Value::utf8(monthName(date.month));
    case Unit::Day:
    case Unit::DayOfWeek:
      return Value::utf8(weekdayName(weekday(date)));
    default:
      throw ScriptError("dname() knows kMonth and kDay");
  }
}

Value dtcy(Args a) {
  const DateTime date = a[0].toDate();
  return date.hasDate ? Value::utf8(formatDate(date, "y")) : Value::text(Text());
}

constexpr std::array table = {
    Function{"date", 3, 7, makeDate}, Function{"dat", 1, 2, dat},     Function{"tim", 1, 2, tim},
    Function{"dadd", 3, 3, dadd},     Function{"ddiff", 3, 3, ddiff}, Function{"dpart", 2, 2, dpart},
    Function{"dname", 2, 2, dname},   Function{"dtcy", 1, 1, dtcy},
};

}  // namespace

std::span<const Function> dateFunctions() {
  return table;
}

}  // namespace rubrica::simhost
