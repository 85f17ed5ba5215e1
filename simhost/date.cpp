#include "simhost/date.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <vector>

namespace rubrica::simhost {

namespace {

constexpr std::array<const char*, 12> monthNames = {"January",   "February", "March",    "April",
                                                    "May",       "June",     "July",     "August",
                                                    "September", "October",  "November", "December"};
constexpr std::array<const char*, 7> weekdayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                     "Thursday", "Friday", "Saturday"};
constexpr std::int64_t daysPerEra = 146097;

std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

std::string digits(int value, int width) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%0*d", width, value);
  return buffer.data();
}

// The pieces of a date text: runs of digits, runs of letters, and the characters between them.
struct Piece {
  enum class Kind { Number, Word, Mark } kind;
  int number = 0;
  int width = 0;
  std::string word;
};

std::optional<std::vector<Piece>> piecesOf(TextView text) {
  constexpr std::size_t longestDateText = 64;
  if (text.size() > longestDateText) return std::nullopt;
  std::vector<Piece> pieces;
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = text[i];
    Piece piece{Piece::Kind::Mark, 0, 0, {}};
    if (c >= U'0' && c <= U'9') {
      piece.kind = Piece::Kind::Number;
      for (; i < text.size() && text[i] >= U'0' && text[i] <= U'9'; ++i) {
        if (++piece.width > 4) return std::nullopt;
        piece.number = piece.number * 10 + static_cast<int>(text[i] - U'0');
      }
    } else if ((c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z')) {
      piece.kind = Piece::Kind::Word;
      for (; i < text.size() && ((text[i] >= U'A' && text[i] <= U'Z') || (text[i] >= U'a' && text[i] <= U'z')); ++i) {
        piece.word.push_back(static_cast<char>(lowerCase(text[i])));
      }
    } else if (c < 0x80) {
      piece.word = static_cast<char>(c);
      ++i;
      if (c == U' ' || c == U',') continue;
    } else {
      return std::nullopt;
    }
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

int monthFromWord(const std::string& word) {
  if (word.size() < 3) return 0;
  for (std::size_t i = 0; i < monthNames.size(); ++i) {
    if (nameKey(monthNames[i]).starts_with(word)) return static_cast<int>(i) + 1;
  }
  return 0;
}

class DateReader {
 public:
  explicit DateReader(std::vector<Piece> pieces) : _pieces(std::move(pieces)) {}

  std::optional<DateTime> read() {
    if (_pieces.empty()) return std::nullopt;
    if (!(isNumber(0) && isMark(1, ":"))) {
      if (!readDate()) return std::nullopt;
      if (_at < _pieces.size() && word(_at) == "t") ++_at;
    }
    if (_at < _pieces.size() && !readTime()) return std::nullopt;
    if (_at != _pieces.size()) return std::nullopt;
    _date.subtype = _date.hasDate ? (_date.hasTime ? dateAndTime : shortDate) : shortTime;
    return _date;
  }

 private:
  bool isNumber(std::size_t i) const { return i < _pieces.size() && _pieces[i].kind == Piece::Kind::Number; }
  bool isMark(std::size_t i, std::string_view mark) const {
    return i < _pieces.size() && _pieces[i].kind == Piece::Kind::Mark && _pieces[i].word == mark;
  }
  std::string word(std::size_t i) const {
    return i < _pieces.size() && _pieces[i].kind == Piece::Kind::Word ? _pieces[i].word : std::string();
  }

  bool setDate(int year, int month, int day, std::size_t used) {
    if (!isValidDate(year, month, day)) return false;
    _date.year = year;
    _date.month = month;
    _date.day = day;
    _date.hasDate = true;
    _at += used;
    return true;
  }

  bool readDate() {
    const auto number = [this](std::size_t i) { return _pieces[i].number; };
    for (const char* mark : {"-", "/", "."}) {
      if (isNumber(0) && isMark(1, mark) && isNumber(2) && isMark(3, mark) && isNumber(4)) {
        if (_pieces[0].width == 4) return setDate(number(0), number(2), number(4), 5);
        return _pieces[4].width == 4 && setDate(number(4), number(2), number(0), 5);
      }
    }
    if (isNumber(0) && monthFromWord(word(1)) != 0 && isNumber(2) && _pieces[2].width == 4) {
      return setDate(number(2), monthFromWord(word(1)), number(0), 3);
    }
    if (monthFromWord(word(0)) != 0 && isNumber(1) && isNumber(2) && _pieces[2].width == 4) {
      return setDate(number(2), monthFromWord(word(0)), number(1), 3);
    }
    return false;
  }

  bool readTime() {
    if (!isNumber(_at) || !isMark(_at + 1, ":") || !isNumber(_at + 2)) return false;
    _date.hour = _pieces[_at].number;
    _date.minute = _pieces[_at + 2].number;
    _date.hasTime = true;
    _at += 3;
    if (isMark(_at, ":") && isNumber(_at + 1)) {
      _date.second = _pieces[_at + 1].number;
      _date.hasSeconds = true;
      _at += 2;
      if (isMark(_at, ".") && isNumber(_at + 1) && _pieces[_at + 1].width == 2) {
        _date.hundredth = _pieces[_at + 1].number;
        _date.hasHundredths = true;
        _at += 2;
      }
    }
    return _date.hour < 24 && _date.minute < 60 && _date.second < 60;
  }

  std::vector<Piece> _pieces;
  std::size_t _at = 0;
  DateTime _date;
};

std::string upperShort(const char* name) {
  std::string text(name, 3);
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string ordinal(int day) {
  const char* ending = "th";
  if (day < 11 || day > 13) {
    if (day % 10 == 1) ending = "st";
    if (day % 10 == 2) ending = "nd";
    if (day % 10 == 3) ending = "rd";
  }
  return std::to_string(day) + ending;
}

std::string datePart(const DateTime& date, char code) {
  if (!date.hasDate) return {};
  switch (code) {
    case 'D':
      return digits(date.day, 2);
    case 'd':
      return ordinal(date.day);
    case 'M':
      return digits(date.month, 2);
    case 'm':
      return upperShort(monthName(date.month));
    case 'n':
      return monthName(date.month);
    case 'Y':
      return digits(date.year % 100, 2);
    case 'y':
      return digits(date.year, 4);
    case 'C':
      return digits(date.year / 100, 2);
    case 'W':
      return std::to_string(weekday(date));
    case 'w':
      return weekdayName(weekday(date));
    case 'V':
      return std::string(weekdayName(weekday(date)), 3);
    case 'E':
      return std::to_string(dayOfYear(date));
    case 'G':
      return std::to_string((dayOfYear(date) + 6 - weekday(date)) / 7 + 1);
    default:
      return std::to_string((date.day + 6 - weekday(date)) / 7 + 1);
  }
}

std::string timePart(const DateTime& date, char code) {
  if (!date.hasTime && !date.hasDate) return {};
  switch (code) {
    case 'H':
      return digits(date.hour, 2);
    case 'h':
      return std::to_string(date.hour % 12 == 0 ? 12 : date.hour % 12);
    case 'N':
      return digits(date.minute, 2);
    case 'S':
      return digits(date.second, 2);
    case 's':
      return digits(date.hundredth, 2);
    default:
      return date.hour < 12 ? "AM" : "PM";
  }
}

}  // namespace

std::int64_t daysFromCivil(int year, int month, int day) {
  // Years begin in March here, so that the leap day is the last of its year.
  const std::int64_t y = static_cast<std::int64_t>(year) - (month <= 2 ? 1 : 0);
  const std::int64_t era = floorDivide(y, 400);
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t dayOfMarchYear = (153 * ((month + 9) % 12) + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfMarchYear;
  constexpr std::int64_t marchEraToUnix = 719468;
  return era * daysPerEra + dayOfEra - marchEraToUnix;
}

void civilFromDays(std::int64_t days, DateTime& date) {
  constexpr std::int64_t marchEraToUnix = 719468;
  const std::int64_t z = days + marchEraToUnix;
  const std::int64_t era = floorDivide(z, daysPerEra);
  const std::int64_t dayOfEra = z - era * daysPerEra;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfMarchYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfMarchYear + 2) / 153;
  date.day = static_cast<int>(dayOfMarchYear - (153 * marchMonth + 2) / 5 + 1);
  date.month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  date.year = static_cast<int>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : lengths[static_cast<std::size_t>(month - 1)];
}

bool isValidDate(int year, int month, int day) {
  return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

int weekday(const DateTime& date) {
  constexpr int weekdayOfUnixDay0 = 4;
  const std::int64_t days = daysFromCivil(date.year, date.month, date.day) + weekdayOfUnixDay0;
  return static_cast<int>(days - floorDivide(days, 7) * 7);
}

int dayOfYear(const DateTime& date) {
  return static_cast<int>(daysFromCivil(date.year, date.month, date.day) - daysFromCivil(date.year, 1, 1)) + 1;
}

std::int64_t hundredthsOf(const DateTime& date) {
  const std::int64_t days = date.hasDate ? daysFromCivil(date.year, date.month, date.day) : 0;
  return days * hundredthsPerDay + ((date.hour * 60LL + date.minute) * 60 + date.second) * 100 + date.hundredth;
}

DateTime dateFromHundredths(std::int64_t hundredths, const DateTime& shape) {
  DateTime date = shape;
  const std::int64_t days = floorDivide(hundredths, hundredthsPerDay);
  std::int64_t rest = hundredths - days * hundredthsPerDay;
  if (date.hasDate) civilFromDays(days, date);
  date.hundredth = static_cast<int>(rest % 100);
  rest /= 100;
  date.second = static_cast<int>(rest % 60);
  rest /= 60;
  date.minute = static_cast<int>(rest % 60);
  date.hour = static_cast<int>(rest / 60);
  return date;
}

std::optional<DateTime> dateFromText(TextView text) {
  auto pieces = piecesOf(trimmed(text));
  if (!pieces) return std::nullopt;
  return DateReader(std::move(*pieces)).read();
}

std::string textFromDate(const DateTime& date) {
  std::string text;
  if (date.hasDate) text = digits(date.year, 4) + "-" + digits(date.month, 2) + "-" + digits(date.day, 2);
  if (date.hasTime) {
    if (!text.empty()) text += " ";
    text += digits(date.hour, 2) + ":" + digits(date.minute, 2);
    if (date.hasSeconds) text += ":" + digits(date.second, 2);
    if (date.hasHundredths && date.hundredth != 0) text += "." + digits(date.hundredth, 2);
  }
  return text;
}

std::string formatDate(const DateTime& date, std::string_view format) {
  constexpr std::string_view dateCodes = "DdMmnYyCWwVEGF";
  constexpr std::string_view timeCodes = "HhNSsA";
  if (date.empty()) return {};
  std::string text;
  for (const char code : format) {
    if (dateCodes.find(code) != std::string_view::npos) {
      text += datePart(date, code);
    } else if (timeCodes.find(code) != std::string_view::npos) {
      text += timePart(date, code);
    } else {
      text += code;
    }
  }
  return text;
}

DateTime dateAsSubtype(DateTime date, int subtype) {
  if (subtype == shortTime) {
    date.year = date.month = date.day = 0;
    date.hasDate = false;
  } else if (subtype < 3) {
    date.hour = date.minute = date.second = date.hundredth = 0;
    date.hasTime = date.hasSeconds = date.hasHundredths = false;
  }
  date.subtype = subtype;
  return date;
}

const char* monthName(int month) {
  return monthNames[static_cast<std::size_t>(month - 1) % monthNames.size()];
}
const char* weekdayName(int day) {
  return weekdayNames[static_cast<std::size_t>(day) % weekdayNames.size()];
}

}  // namespace rubrica::simhost
