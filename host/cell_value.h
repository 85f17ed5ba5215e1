// Values between host fields and cells: dates both ways, reading a cell, writing a cell by type. Cells and whole lists
// use the same rules. Rows and columns are 0-based.
#pragma once

#include "engine/book.h"
#include "host/host_field.h"
#include "host/num_format_mgr.h"

namespace rubrica::host {

// The values of the kXLType... constants.
namespace celltype {
inline constexpr int fromKind = -1, empty = 1, number = 2, string = 3, boolean = 4, date = 5, blank = 6;
}

// How an .xlsx sheet keeps text that is written here: shared.
inline constexpr int kSharedString = 2;

struct DateNumber {
  double number;
  int numFormat;  // the number format id that shows what parts the date has
};

DateNumber dateToNumber(const HostField& field, Book& book);
void numberToDate(HostField& field, double number, Book& book);

// A place in a book, and what writing there needs.
struct CellPlace {
  Book& book;
  Sheet& sheet;
  NumFormatMgr& numFormats;
  int row;
  int column;
};

// Writes a value as the given type; celltype::fromKind lets the kind of the field decide, by which a date is a blank.
// An unknown type writes nothing. The engine's answer is not looked at.
void writeCell(const CellPlace& place, const HostField& field, int type, Format* format);
// A date field as a number with a date format (the book's shared one when none is given), a zero date as a blank.
void writeDateCell(const CellPlace& place, const HostField& field, Format* format);
void readCell(Book& book, Sheet& sheet, int row, int column, HostField& field);

}  // namespace rubrica::host
