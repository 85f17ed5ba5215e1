// The differences of two books, found through the interfaces: cells by place, sheets by name. Used by rubrica-diff.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "tools/book_opener.h"
#include "tools/progress.h"
#include "tools/sheet_facts.h"
#include "tools/style_facts.h"

namespace rubrica::tools {

struct DiffOptions {
  std::set<Subject> subjects;  // empty: all
  double tolerance = 0;        // numbers this near to each other, relative to the larger, count as equal
};

// Tells `report` of each difference, one line of text: where, what, the first book's value "->" the second's.
class BookDiff {
 public:
  BookDiff(OpenedBook& a, OpenedBook& b, DiffOptions options, std::function<void(const std::string&)> report);
  void run(Progress& progress);

 private:
  void compareSheets(const std::string& name, Sheet& a, Sheet& b, Progress& progress);
  void compareCells(const std::string& name, Sheet& a, Sheet& b, Progress& progress);
  void compareCell(Sheet& a, Sheet& b, int row, int col);
  void compareFormats(const std::string& place, Format* a, Format* b);
  void compareSizes(const std::string& name, Sheet& a, Sheet& b);
  void compareRuns(const std::string& name, const char* what, const std::vector<LineRun>& a,
                   const std::vector<LineRun>& b, std::string (*lineText)(int));
  void compareFacts(const std::string& name, const Facts& a, const Facts& b);
  bool sameNumber(Sheet& a, Sheet& b, int row, int col) const;
  void tell(const std::string& place, const std::string& what, const std::string& a, const std::string& b);

  OpenedBook &_a, &_b;
  StyleReader _aStyles, _bStyles;
  DiffOptions _options;
  std::function<void(const std::string&)> _report;
  std::string _sheetName;
  std::map<std::pair<Format*, Format*>, bool> _sameFormats;
};

}  // namespace rubrica::tools
