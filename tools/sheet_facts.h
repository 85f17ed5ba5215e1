// What a sheet is beside its cells: one line of text a fact, so that two sheets can be compared fact by fact. Read
// through the interfaces alone.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/book.h"
#include "tools/cell_value.h"

namespace rubrica::tools {

// The subjects that rubrica-diff can be told to look at or to leave out; the first three are those of cells.
enum class Subject {
  values,
  formulas,
  formats,
  comments,
  merges,
  links,
  names,
  sizes,
  pictures,
  page,
  view,
  protection
};
const char* subjectName(Subject subject);
const std::vector<Subject>& allSubjects();

// A fact by what it is about: {links, "hyperlink A1"} -> "https://example.org".
using Facts = std::map<std::pair<Subject, std::string>, std::string>;

// All but the sizes of rows and columns, which are runs.
Facts sheetFacts(Book& book, Sheet& sheet, const std::set<Subject>& wanted);

struct NamedRange {
  std::u16string name;
  CellRange range;  // -1 throughout for a name that stands for no range
  int scope = Sheet::kScopeWorkbook;
  bool hidden = false;
};
// The names that the sheet lists: its own and those of the book, without those that stand for the page's settings.
std::vector<NamedRange> namedRanges(Sheet& sheet);

struct Hyperlink {
  std::u16string target;
  CellRange range;
};
std::vector<Hyperlink> hyperlinks(Sheet& sheet);
std::vector<CellRange> merges(Sheet& sheet);

struct CellComment {
  int row = 0, col = 0;
  std::u16string text;
};
// The comments of the used cells and of the sheet's first rows and columns, row by row: a comment can stand at a cell
// that there isn't, and the interface has no list of them.
std::vector<CellComment> comments(Book& book, Sheet& sheet);

// Rows or columns, in runs of neighbours that are alike, from the first one on without a gap. `form` is the file form
// of the book, which says how many rows and columns a sheet has.
struct LineRun {
  int first = 0, last = 0;
  double size = 0;  // height in points or width in characters
  bool hidden = false;
};
std::vector<LineRun> rowRuns(Sheet& sheet, const std::string& form);
std::vector<LineRun> columnRuns(Sheet& sheet, const std::string& form);

}  // namespace rubrica::tools
