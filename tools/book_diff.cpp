#include "tools/book_diff.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/address.h"
#include "tools/cell_value.h"

namespace rubrica::tools {
namespace {

std::map<std::u16string, int> sheetsByName(Book& book) {
  std::map<std::u16string, int> sheets;
  for (int i = 0; i < book.sheetCount(); ++i) sheets.emplace(book.getSheetName(i), i);
  return sheets;
}

std::string shown(const std::string& value) {
  return value.empty() ? "nothing" : value;
}

std::string sizeText(const LineRun& run) {
  return numberText(run.size) + (run.hidden ? " hidden" : "");
}

struct UsedRange {
  int rowFirst, rowEnd, colFirst, colEnd;
};

UsedRange usedByBoth(Sheet& a, Sheet& b) {
  const auto isEmpty = [](Sheet& sheet) { return sheet.lastRow() == 0 || sheet.lastCol() == 0; };
  if (isEmpty(a) && isEmpty(b)) return {0, 0, 0, 0};
  Sheet& first = isEmpty(a) ? b : a;
  Sheet& second = isEmpty(b) ? a : b;
  return {std::min(first.firstRow(), second.firstRow()), std::max(first.lastRow(), second.lastRow()),
          std::min(first.firstCol(), second.firstCol()), std::max(first.lastCol(), second.lastCol())};
}

}  // namespace

BookDiff::BookDiff(OpenedBook& a, OpenedBook& b, DiffOptions options, std::function<void(const std::string&)> report)
    : _a(a), _b(b), _aStyles(*a.book), _bStyles(*b.book), _options(std::move(options)), _report(std::move(report)) {
  if (_options.subjects.empty()) _options.subjects.insert(allSubjects().begin(), allSubjects().end());
}

void BookDiff::tell(const std::string& place, const std::string& what, const std::string& a, const std::string& b) {
  _report(place + ": " + what + ": " + shown(a) + " -> " + shown(b));
}

void BookDiff::run(Progress& progress) {
  if (_a.book->isDate1904() != _b.book->isDate1904()) {
    tell("book", "first day of dates", _a.book->isDate1904() ? "1904" : "1900",
         _b.book->isDate1904() ? "1904" : "1900");
  }
  const auto aSheets = sheetsByName(*_a.book), bSheets = sheetsByName(*_b.book);
  for (const auto& [name, position] : bSheets) {
    if (!aSheets.contains(name)) _report("sheet \"" + narrowText(name) + "\": only in the second book");
  }
  for (int i = 0; i < _a.book->sheetCount(); ++i) {
    const std::u16string wideName = _a.book->getSheetName(i);
    const std::string name = narrowText(wideName);
    const auto other = bSheets.find(wideName);
    if (other == bSheets.end()) {
      _report("sheet \"" + name + "\": only in the first book");
      continue;
    }
    if (other->second != i) {
      tell("sheet \"" + name + "\"", "position", std::to_string(i + 1), std::to_string(other->second + 1));
    }
    Sheet* a = _a.book->getSheet(i);
    Sheet* b = _b.book->getSheet(other->second);
    if (a != nullptr && b != nullptr) compareSheets(name, *a, *b, progress);
    if ((a == nullptr) != (b == nullptr))
      tell("sheet \"" + name + "\"", "holds", a ? "cells" : "a chart", b ? "cells" : "a chart");
  }
}

void BookDiff::compareSheets(const std::string& name, Sheet& a, Sheet& b, Progress& progress) {
  _sheetName = name;
  compareCells(name, a, b, progress);
  progress.begin("comparing the settings of sheet " + name);
  if (_options.subjects.contains(Subject::sizes)) compareSizes(name, a, b);
  compareFacts(name, sheetFacts(*_a.book, a, _options.subjects), sheetFacts(*_b.book, b, _options.subjects));
}

void BookDiff::compareCells(const std::string& name, Sheet& a, Sheet& b, Progress& progress) {
  const UsedRange used = usedByBoth(a, b);
  progress.begin("comparing the cells of sheet " + name, used.rowEnd - used.rowFirst);
  for (int row = used.rowFirst; row < used.rowEnd; ++row, progress.advance()) {
    for (int col = used.colFirst; col < used.colEnd; ++col) compareCell(a, b, row, col);
  }
}

void BookDiff::compareCell(Sheet& a, Sheet& b, int row, int col) {
  const CellType aType = a.cellType(row, col), bType = b.cellType(row, col);
  const bool aFormula = a.isFormula(row, col), bFormula = b.isFormula(row, col);
  if (aType == CellType::empty && bType == CellType::empty && !aFormula && !bFormula) return;
  const auto place = [&] { return _sheetName + "!" + addressText(row, col); };
  if (_options.subjects.contains(Subject::values) && !sameNumber(a, b, row, col)) {
    const std::string aValue = valueText(a, row, col), bValue = valueText(b, row, col);
    if (aValue != bValue) tell(place(), "value", aValue, bValue);
  }
  if (_options.subjects.contains(Subject::formulas) && (aFormula || bFormula)) {
    const std::u16string aText = formulaText(a, row, col), bText = formulaText(b, row, col);
    if (aText != bText) tell(place(), "formula", narrowText(aText), narrowText(bText));
  }
  if (_options.subjects.contains(Subject::formats)) {
    Format* aFormat = a.cellFormat(row, col);
    Format* bFormat = b.cellFormat(row, col);
    const auto [known, isNew] = _sameFormats.try_emplace({aFormat, bFormat}, false);
    if (isNew) known->second = _aStyles.of(aFormat) == _bStyles.of(bFormat);
    if (!known->second) compareFormats(place(), aFormat, bFormat);
  }
}

bool BookDiff::sameNumber(Sheet& a, Sheet& b, int row, int col) const {
  if (a.cellType(row, col) != CellType::number || b.cellType(row, col) != CellType::number) return false;
  const double x = a.readNum(row, col), y = b.readNum(row, col);
  return x == y || std::abs(x - y) <= _options.tolerance * std::max(std::abs(x), std::abs(y));
}

void BookDiff::compareFormats(const std::string& place, Format* a, Format* b) {
  const auto aFacts = describe(_aStyles.of(a)), bFacts = describe(_bStyles.of(b));
  for (std::size_t i = 0; i < aFacts.size(); ++i) {
    if (aFacts[i].second != bFacts[i].second) tell(place, aFacts[i].first, aFacts[i].second, bFacts[i].second);
  }
}

void BookDiff::compareSizes(const std::string& name, Sheet& a, Sheet& b) {
  compareRuns(name, "height of row", rowRuns(a, _a.form), rowRuns(b, _b.form),
              [](int row) { return std::to_string(row + 1); });
  compareRuns(name, "width of column", columnRuns(a, _a.form), columnRuns(b, _b.form),
              [](int col) { return narrowText(columnLetters(col)); });
}

// Runs that differ are told as far as both sides stay the same. Where one sheet has more lines than the other, as
// across file forms, the last run of the shorter stands for what it has not.
void BookDiff::compareRuns(const std::string& name, const char* what, const std::vector<LineRun>& a,
                           const std::vector<LineRun>& b, std::string (*lineText)(int)) {
  const int last = std::max(a.back().last, b.back().last);
  std::size_t i = 0, j = 0;
  for (int first = 0; first <= last;) {
    const int aEnd = i + 1 < a.size() ? a[i].last : last, bEnd = j + 1 < b.size() ? b[j].last : last;
    const int end = std::min(aEnd, bEnd);
    if (a[i].size != b[j].size || a[i].hidden != b[j].hidden) {
      const std::string range = first == end ? lineText(first) : "s " + lineText(first) + "-" + lineText(end);
      tell(name, what + (first == end ? " " + range : range), sizeText(a[i]), sizeText(b[j]));
    }
    if (end == aEnd) ++i;
    if (end == bEnd) ++j;
    first = end + 1;
  }
}

void BookDiff::compareFacts(const std::string& name, const Facts& a, const Facts& b) {
  for (const auto& [key, value] : a) {
    const auto other = b.find(key);
    const std::string otherValue = other == b.end() ? std::string() : other->second;
    if (other == b.end() || otherValue != value) tell(name, key.second, value, otherValue);
  }
  for (const auto& [key, value] : b) {
    if (!a.contains(key)) tell(name, key.second, {}, value);
  }
}

}  // namespace rubrica::tools
