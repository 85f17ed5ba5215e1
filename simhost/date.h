// A date value of the host: calendar parts with a subtype, arithmetic on the proleptic Gregorian calendar, reading
// and formatting. Used by values, by the date functions and by the date services.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simhost/text.h"

namespace rubrica::simhost {

// Subtype codes of a date: 0 to 2 are dates (the three centuries of a short date), 3 to 5 date and time, 6 a time.
enum DateSubtype : int { shortDate = 1, dateAndTime = 4, shortTime = 6 };

inline constexpr std::int64_t hundredthsPerDay = 24LL * 60 * 60 * 100;

struct DateTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int hundredth = 0;
  bool hasDate = false;
  bool hasTime = false;
  bool hasSeconds = false;
  bool hasHundredths = false;
  int subtype = dateAndTime;

  bool empty() const { return !hasDate && !hasTime; }
};

// Days since 1970-01-01 and back; any year.
std::int64_t daysFromCivil(int year, int month, int day);
void civilFromDays(std::int64_t days, DateTime& date);
int daysInMonth(int year, int month);

bool isValidDate(int year, int month, int day);

// 0 Sunday to 6 Saturday.
int weekday(const DateTime& date);
int dayOfYear(const DateTime& date);

// Hundredths of a second since 1970-01-01; a time alone counts from 0.
std::int64_t hundredthsOf(const DateTime& date);
DateTime dateFromHundredths(std::int64_t hundredths, const DateTime& shape);

// Reads `2026-11-20`, `20/11/2026`, `20 Nov 2026`, `Nov 20 2026`, each with an optional `14:30[:15[.25]]`, or a time
// alone. Nothing when the text is none of these.
std::optional<DateTime> dateFromText(TextView text);

// `2026-11-20`, `2026-11-20 14:30:15`, `14:30`: the form that dateFromText reads back.
std::string textFromDate(const DateTime& date);

// One letter a part: D d day, M m n month, Y y C year, W w V E G F week and day of week, H h N S s A time.
std::string formatDate(const DateTime& date, std::string_view format);

// Drops or adds parts so that the value suits the subtype.
DateTime dateAsSubtype(DateTime date, int subtype);

const char* monthName(int month);
const char* weekdayName(int day);

}  // namespace rubrica::simhost
