// Defined names, print areas and print titles of an .xls sheet: all of them entries of the book's table of names.
#include <algorithm>

#include "biff/book_impl.h"
#include "biff/range_tokens.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

constexpr int kLastRow = kBiffRows - 1, kLastCol = kBiffCols - 1;
constexpr std::size_t kMostNameCharacters = 255;
constexpr FormulaRange kNoRange{-1, -1, -1, -1};
constexpr char kNotFound[] = "not found";
constexpr char kNameNotFound[] = "named range is not found";

FormulaRange ordered(int rowFirst, int rowLast, int colFirst, int colLast) {
  return {std::min(rowFirst, rowLast), std::max(rowFirst, rowLast), std::min(colFirst, colLast),
          std::max(colFirst, colLast)};
}

void set(int* target, int value) {
  if (target != nullptr) *target = value;
}

void give(const FormulaRange& range, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  set(rowFirst, range.rowFirst);
  set(rowLast, range.rowLast);
  set(colFirst, range.colFirst);
  set(colLast, range.colLast);
}

void checkBetween(int value, int last, const char* message) {
  if (value < 0 || value > last) throw xlerror(message);
}

std::uint16_t itabOfScope(const BookImplT& book, int scopeId) {
  if (scopeId < 0) return 0;
  if (static_cast<std::size_t>(scopeId) >= book.boundSheetCount()) throw xlerror("index is out of range");
  return Lbl::scopeOf(scopeId);
}

std::u16string_view checkedName(const char16_t* name) {
  const std::u16string_view text = name == nullptr ? std::u16string_view() : name;
  if (text.empty()) throw xlerror("name can't be empty");
  if (text.find(u' ') != text.npos) throw xlerror("space symbol isn't allowed");
  if (text.size() > kMostNameCharacters) throw xlerror("string is too long");
  return text;
}

// The entry for a built-in name of a sheet, made when there is none.
Lbl& builtInEntry(BookImplT& book, BuiltInName name, int sheet) {
  NameTable& table = book.names();
  const std::uint16_t itab = Lbl::scopeOf(sheet);
  if (const auto found = table.find(name, itab)) return table.names()[*found];
  const auto code = static_cast<char16_t>(name);
  Lbl made;
  made.grbit = Lbl::kBuiltIn;
  made.itab = itab;
  made.name.assign({&code, 1}, book.state().pool);
  return table.names().emplace_back(std::move(made));
}

void removeBuiltIn(BookImplT& book, BuiltInName name, int sheet) {
  if (const auto found = book.names().find(name, Lbl::scopeOf(sheet))) book.removeName(*found);
}

// The parts of print titles: whole rows and whole columns. A range of everything is both.
struct PrintTitles {
  std::optional<FormulaRange> rows, cols;
};

PrintTitles printTitles(BookImplT& book, int sheet) {
  PrintTitles titles;
  const auto found = book.names().find(BuiltInName::printTitles, Lbl::scopeOf(sheet));
  if (!found) return titles;
  for (const FormulaRange& range : leadingRanges(book.names().names()[*found].formula)) {
    if (range.colFirst == 0 && range.colLast == kLastCol) titles.rows = range;
    if (range.rowFirst == 0 && range.rowLast == kLastRow) titles.cols = range;
  }
  return titles;
}

void setPrintTitles(BookImplT& book, int sheet, const PrintTitles& titles) {
  const std::uint16_t self = book.links().selfReference(sheet, sheet);
  Lbl& name = builtInEntry(book, BuiltInName::printTitles, sheet);
  name.formula = titles.rows && titles.cols ? unionTokens(self, *titles.cols, *titles.rows)
                                            : rangeTokens(self, titles.rows ? *titles.rows : *titles.cols);
}

// The position in the book's table of the sheet's name number `index`: names of its own scope and of the book's.
std::optional<std::size_t> nameOfSheet(const NameTable& table, int sheet, int index) {
  for (std::size_t i = 0; i < table.names().size(); ++i) {
    const std::uint16_t itab = table.names()[i].itab;
    if ((itab == 0 || itab == Lbl::scopeOf(sheet)) && index-- == 0) return i;
  }
  return std::nullopt;
}

}  // namespace

bool SheetImplT::printRepeatRows(int* rowFirst, int* rowLast) {
  return guarded(state(), false, [&] {
    const auto rows = printTitles(*_book, _book->positionOf(*this)).rows;
    if (!rows) throw xlerror(kNotFound);
    set(rowFirst, rows->rowFirst);
    set(rowLast, rows->rowLast);
    return true;
  });
}

bool SheetImplT::printRepeatCols(int* colFirst, int* colLast) {
  return guarded(state(), false, [&] {
    const auto cols = printTitles(*_book, _book->positionOf(*this)).cols;
    if (!cols) throw xlerror(kNotFound);
    set(colFirst, cols->colFirst);
    set(colLast, cols->colLast);
    return true;
  });
}

void SheetImplT::setPrintRepeatRows(int rowFirst, int rowLast) {
  guarded(state(), [&] {
    checkBetween(rowFirst, kLastRow, "firstRow must be in range 0-65535");
    checkBetween(rowLast, kLastRow, "lastRow must be in range 0-65535");
    const int sheet = _book->positionOf(*this);
    PrintTitles titles = printTitles(*_book, sheet);
    titles.rows = ordered(rowFirst, rowLast, 0, kLastCol);
    setPrintTitles(*_book, sheet, titles);
  });
}

void SheetImplT::setPrintRepeatCols(int colFirst, int colLast) {
  guarded(state(), [&] {
    checkBetween(colFirst, kLastCol, "firstCol must be in range 0-255");
    checkBetween(colLast, kLastCol, "lastCol must be in range 0-255");
    const int sheet = _book->positionOf(*this);
    PrintTitles titles = printTitles(*_book, sheet);
    titles.cols = ordered(0, kLastRow, colFirst, colLast);
    setPrintTitles(*_book, sheet, titles);
  });
}

void SheetImplT::clearPrintRepeats() {
  guarded(state(), [&] { removeBuiltIn(*_book, BuiltInName::printTitles, _book->positionOf(*this)); });
}

bool SheetImplT::printArea(int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(state(), false, [&] {
    const auto found = _book->names().find(BuiltInName::printArea, Lbl::scopeOf(_book->positionOf(*this)));
    const auto range = found ? leadingRange(_book->names().names()[*found].formula) : std::nullopt;
    if (!range) throw xlerror(kNotFound);
    give(*range, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

void SheetImplT::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(state(), [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    const int sheet = _book->positionOf(*this);
    builtInEntry(*_book, BuiltInName::printArea, sheet).formula =
        rangeTokens(_book->links().selfReference(sheet, sheet), ordered(rowFirst, rowLast, colFirst, colLast));
  });
}

void SheetImplT::clearPrintArea() {
  guarded(state(), [&] { removeBuiltIn(*_book, BuiltInName::printArea, _book->positionOf(*this)); });
}

bool SheetImplT::getNamedRange(Text name, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int scopeId,
                               bool* hidden) {
  return guarded(state(), false, [&] {
    const auto found = _book->names().find(name == nullptr ? u"" : name, itabOfScope(*_book, scopeId));
    const auto range = found ? leadingRange(_book->names().names()[*found].formula) : std::nullopt;
    if (!range) throw xlerror(kNameNotFound);
    give(*range, rowFirst, rowLast, colFirst, colLast);
    if (hidden != nullptr) *hidden = _book->names().names()[*found].hidden();
    return true;
  });
}

bool SheetImplT::setNamedRange(Text name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId,
                               bool hidden) {
  return guarded(state(), false, [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    const std::u16string_view text = checkedName(name);
    const std::uint16_t itab = itabOfScope(*_book, scopeId);
    const int sheet = _book->positionOf(*this);
    const std::vector<std::uint8_t> tokens =
        rangeTokens(_book->links().selfReference(sheet, sheet), ordered(rowFirst, rowLast, colFirst, colLast));
    const std::uint16_t options = hidden ? Lbl::kHidden : 0;
    if (const auto found = _book->names().find(text, itab)) {
      Lbl& present = _book->names().names()[*found];
      present.formula = tokens;
      present.grbit |= options;
      return true;
    }
    Lbl made;
    made.grbit = options;
    made.itab = itab;
    made.name.assign(text, state().pool);
    made.formula = tokens;
    _book->names().names().push_back(std::move(made));
    return true;
  });
}

bool SheetImplT::delNamedRange(Text name, int scopeId) {
  return guarded(state(), false, [&] {
    const auto found = _book->names().find(name == nullptr ? u"" : name, itabOfScope(*_book, scopeId));
    if (!found) throw xlerror(kNameNotFound);
    _book->removeName(*found);
    return true;
  });
}

int SheetImplT::namedRangeSize() {
  const std::uint16_t own = Lbl::scopeOf(_book->positionOf(*this));
  const auto& names = _book->names().names();
  return static_cast<int>(
      std::count_if(names.begin(), names.end(), [&](const Lbl& name) { return name.itab == 0 || name.itab == own; }));
}

SheetImplT::Text SheetImplT::namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast,
                                        int* scopeId, bool* hidden) {
  return guarded(state(), Text{}, [&]() -> Text {
    const auto found = nameOfSheet(_book->names(), _book->positionOf(*this), index);
    if (index < 0 || !found) throw xlerror("index is out of range");
    const Lbl& name = _book->names().names()[*found];
    give(leadingRange(name.formula).value_or(kNoRange), rowFirst, rowLast, colFirst, colLast);
    set(scopeId, name.itab == 0 ? kScopeWorkbook : name.itab - 1);
    if (hidden != nullptr) *hidden = name.hidden();
    _rangeName = name.displayName();
    return _rangeName.c_str();
  });
}

}  // namespace rubrica
