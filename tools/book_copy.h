// Copies one book into a new one of any file form, through the interfaces alone: what they can say is carried over,
// what the other form refuses is listed. Used by rubrica-convert.
#pragma once

#include <map>
#include <vector>

#include "tools/book_opener.h"
#include "tools/cell_value.h"
#include "tools/losses.h"
#include "tools/progress.h"
#include "tools/sheet_facts.h"
#include "tools/style_facts.h"

namespace rubrica::tools {

class BookCopy {
 public:
  // `target` is a new book of the form `targetForm`.
  BookCopy(OpenedBook& source, Book& target, std::string targetForm, Losses& losses);
  // False where the target can't hold a sheet of the source at all; its message says why.
  bool run(Progress& progress);

 private:
  struct Pair {
    Sheet *from, *to;
    std::string name;
  };
  bool makeSheets();
  void copySettings();
  void copyCells(const Pair& sheets, Progress& progress);
  void copyCell(const Pair& sheets, int row, int col);
  bool copyFormula(const Pair& sheets, int row, int col, Format* format);
  bool copyValue(const Pair& sheets, int row, int col, Format* format);
  Format* formatFor(const Pair& sheets, int row, int col);
  void copyLines(const Pair& sheets);
  void copyRanges(const Pair& sheets);
  void copyNames();
  void copyName(const Pair& sheets, const NamedRange& name);
  void copyComments(const Pair& sheets);
  void copyPictures(const Pair& sheets);
  void copyFilters(const Pair& sheets);
  void copyPage(const Pair& sheets);
  void copyBreaks(const Pair& sheets);
  void copyView(const Pair& sheets);
  // Whether the range lies within a sheet of the target; otherwise `kind` is a loss at it.
  bool fits(const Pair& sheets, const CellRange& range, const std::string& kind);
  std::string reason() const { return std::string(" (") + _target.errorMessage() + ")"; }

  OpenedBook& _source;
  Book& _target;
  std::string _targetForm;
  Losses& _losses;
  StyleReader _sourceStyles, _targetStyles;
  StyleWriter _styles;
  std::vector<Pair> _sheets;
  std::map<int, int> _pictures;  // ids of the source and the target
};

}  // namespace rubrica::tools
