// The references that defined names stand for: "Sheet1!$A$1:$B$9", "'My sheet'!$1:$3", and lists of them. Free
// functions that take such text apart, write it, and carry it along when cells move or a sheet gets another name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/line_move.h"
#include "xml/sheet_range.h"

namespace rubrica {

// Names that stand for what a sheet has, and the one under which the range of its filter is kept.
inline constexpr std::string_view kBuiltInPrefix = "_xlnm.";
inline constexpr std::string_view kFilterDatabase = "_xlnm._FilterDatabase";

// One part of a list. A text that stands for no range of a sheet of this book (a formula, another book, a deleted
// reference) has no range.
struct NamePart {
  std::string text;   // as it stands
  std::string sheet;  // UTF-8, without quotes; empty where the text names none
  std::optional<SheetRange> range;

  bool isWholeRows() const;     // all columns
  bool isWholeColumns() const;  // all rows
};

// The parts of a list that commas separate outside of quotes, brackets and parentheses.
std::vector<NamePart> nameParts(std::string_view text);
std::string joinedParts(const std::vector<NamePart>& parts);

// A sheet's name as references write it: in quotes where it isn't a plain word.
std::string quotedSheetName(std::string_view name);
// The text of a range, absolute; rows and columns that are whole come as "$1:$3" and "$A:$C".
std::string referenceText(std::string_view sheet, const SheetRange& range);
NamePart namePart(std::string_view sheet, const SheetRange& range);

// The same text after a move on the sheet of that name. Text that isn't a list of ranges alone stays as it is; a range
// of which nothing is left becomes "#REF!". Nothing when none of the parts has a range left.
std::optional<std::string> movedReference(std::string_view text, std::string_view sheet, const LineMove& move);
// The same text when the sheet gets another name.
std::string renamedReference(std::string_view text, std::string_view from, std::string_view to);

// Names of sheets and ranges: compared without regard to the case of letters.
bool sameName(std::string_view a, std::string_view b);

}  // namespace rubrica
