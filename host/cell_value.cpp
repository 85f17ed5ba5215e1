#include "host/cell_value.h"

#include <cstdint>

#include "host/text.h"

namespace rubrica::host {
namespace {

constexpr int kMillisecondsInHundredth = 10;

bool isWithoutDate(std::int32_t subtype) {
  return subtype == datesubtype::time;
}

bool isWithoutTime(std::int32_t subtype) {
  return subtype == datesubtype::date1900 || subtype == datesubtype::date1980 || subtype == datesubtype::date2000;
}

int typeOfKind(std::int32_t type) {
  switch (type) {
    case kind::character:
      return celltype::string;
    case kind::boolean:
      return celltype::boolean;
    case kind::number:
    case kind::integer:
      return celltype::number;
    default:
      return celltype::blank;
  }
}

// A whole number that 32 bits hold becomes an integer.
void setNumber(HostField& field, double value) {
  const bool isInteger =
      value >= INT32_MIN && value <= INT32_MAX && value == static_cast<double>(static_cast<std::int32_t>(value));
  if (isInteger) {
    field.setInteger(static_cast<std::int32_t>(value));
  } else {
    field.setNumber(value);
  }
}

}  // namespace

DateNumber dateToNumber(const HostField& field, Book& book) {
  const std::int32_t subtype = field.subtype();
  const DateParts parts = field.date();
  const bool hasDate = parts.dateSet != 0 && !isWithoutDate(subtype);
  const bool mayHaveTime = !isWithoutTime(subtype);
  const bool hasTime = parts.timeSet != 0 && mayHaveTime;
  const bool hasSeconds = parts.secondsSet != 0 && mayHaveTime;
  const bool hasHundredths = parts.hundredthsSet != 0 && mayHaveTime;

  DateNumber result{};
  result.number = book.datePack(hasDate ? parts.year : 0, hasDate ? parts.month : 0, hasDate ? parts.day : 0,
                                hasTime ? parts.hour : 0, hasTime ? parts.minute : 0, hasSeconds ? parts.second : 0,
                                hasHundredths ? parts.hundredths * kMillisecondsInHundredth : 0);
  constexpr int kTimeWithSeconds = 18, kTimeWithoutSeconds = 19;
  if (hasDate) {
    result.numFormat = hasTime ? numformat::dateTime : numformat::date;
  } else if (hasTime) {
    result.numFormat = hasSeconds ? kTimeWithSeconds : kTimeWithoutSeconds;
  } else {
    result.numFormat = field.type();
  }
  return result;
}

void numberToDate(HostField& field, double number, Book& book) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
  book.dateUnpack(number, &year, &month, &day, &hour, &minute, &second, &millisecond);
  const bool hasDate = year != 0 || month != 0 || day != 0;
  const bool hasTime = hour != 0 || minute != 0 || second != 0 || millisecond != 0;

  DateParts parts{};
  if (hasDate) {
    parts.dateSet = 1;
    parts.year = static_cast<std::int16_t>(year);
    parts.month = static_cast<std::uint8_t>(month);
    parts.day = static_cast<std::uint8_t>(day);
  }
  if (hasTime) {
    parts.timeSet = parts.secondsSet = parts.hundredthsSet = 1;
    parts.hour = static_cast<std::uint8_t>(hour);
    parts.minute = static_cast<std::uint8_t>(minute);
    parts.second = static_cast<std::uint8_t>(second);
    parts.hundredths = static_cast<std::uint8_t>(millisecond / kMillisecondsInHundredth);
  }
  std::int32_t subtype = datesubtype::dateTime;
  if (hasDate && !hasTime) subtype = datesubtype::date1980;
  if (hasTime && !hasDate) subtype = datesubtype::time;
  field.setDate(parts, subtype);
}

void writeDateCell(const CellPlace& place, const HostField& field, Format* format) {
  const DateNumber date = dateToNumber(field, place.book);
  if (format == nullptr) format = place.numFormats.formatForNumFormat(date.numFormat);
  if (date.number != 0.0) {
    place.sheet.writeNum(place.row, place.column, date.number, format);
  } else {
    place.sheet.writeBlank(place.row, place.column, format);
  }
}

void writeCell(const CellPlace& place, const HostField& field, int type, Format* format) {
  if (type == celltype::fromKind) type = typeOfKind(field.type());
  switch (type) {
    case celltype::empty:
    case celltype::blank:
      place.sheet.writeBlank(place.row, place.column, format);
      break;
    case celltype::number: {
      const double value = field.type() == kind::integer ? field.integer() : field.number();
      place.sheet.writeNum(place.row, place.column, value, format);
      break;
    }
    case celltype::string:
      place.sheet.writeStr(place.row, place.column, field.text().c_str(), format, kSharedString);
      break;
    case celltype::boolean:
      place.sheet.writeBool(place.row, place.column, field.boolean(), format, ErrorType::noError);
      break;
    case celltype::date:
      writeDateCell(place, field, format);
      break;
    default:
      break;
  }
}

// A date is a number in a format of dates, so that other cells are not asked whether they are one.
void readCell(Book& book, Sheet& sheet, int row, int column, HostField& field) {
  switch (sheet.cellType(row, column)) {
    case CellType::number:
      if (sheet.isDate(row, column)) {
        numberToDate(field, sheet.readNum(row, column), book);
      } else {
        setNumber(field, sheet.readNum(row, column));
      }
      break;
    case CellType::string:
      field.setText(orEmpty(sheet.readStr(row, column)));
      break;
    case CellType::boolean:
      field.setBoolean(sheet.readBool(row, column));
      break;
    default:
      field.setText({});
      break;
  }
}

}  // namespace rubrica::host
