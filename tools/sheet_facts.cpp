#include "tools/sheet_facts.h"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "tools/book_opener.h"

namespace rubrica::tools {
namespace {

constexpr const char* kSubjectNames[] = {"values", "formulas", "formats",  "comments", "merges", "links",
                                         "names",  "sizes",    "pictures", "page",     "view",   "protection"};

// Rows past this are looked at only as far as the sheet is used: a million of them would take longer than all the rest.
constexpr int kRowsAlwaysRead = 65536;
// Cells here are asked for a comment even where the sheet is not used.
constexpr int kCommentRows = 256, kCommentCols = 64;

constexpr std::string_view kNoComments = "error in readComment";

// Print areas, print titles and filters are stored as names too, and so are functions that a file form is too old to
// know; they are read as what they are.
bool isBuiltIn(std::u16string_view name) {
  return name == u"Print_Area" || name == u"Print_Titles" || name == u"_FilterDatabase" || name.starts_with(u"_xl");
}

std::string text(const char16_t* wide) {
  return wide == nullptr ? std::string() : narrowText(wide);
}

std::string flag(bool set) {
  return set ? "yes" : "no";
}

std::string listText(int count, const std::function<int(int)>& at) {
  std::string list;
  for (int i = 0; i < count; ++i) list += (i > 0 ? " " : "") + std::to_string(at(i));
  return list;
}

// FNV-1a: names the bytes of a picture, nothing more.
std::string digest(const void* data, std::size_t size) {
  std::uint64_t hash = 14695981039346656037u;
  const auto* bytes = static_cast<const unsigned char*>(data);
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 1099511628211u;
  return std::to_string(size) + " bytes " + std::to_string(hash);
}

class Collector {
 public:
  Collector(Book& book, Sheet& sheet, const std::set<Subject>& wanted) : _book(book), _sheet(sheet), _wanted(wanted) {}

  Facts run() {
    if (wants(Subject::merges)) {
      for (const CellRange& range : merges(_sheet)) put(Subject::merges, "merge " + rangeText(range), "merged");
    }
    if (wants(Subject::links)) {
      for (const Hyperlink& link : hyperlinks(_sheet)) {
        put(Subject::links, "hyperlink " + rangeText(link.range), narrowText(link.target));
      }
    }
    if (wants(Subject::names)) names();
    if (wants(Subject::comments)) comments();
    if (wants(Subject::pictures)) pictures();
    if (wants(Subject::page)) page();
    if (wants(Subject::view)) view();
    if (wants(Subject::protection)) put(Subject::protection, "protected", flag(_sheet.protect()));
    return std::move(_facts);
  }

 private:
  bool wants(Subject subject) const { return _wanted.contains(subject); }
  void put(Subject subject, const std::string& what, const std::string& value) { _facts[{subject, what}] = value; }

  void names() {
    for (const NamedRange& name : namedRanges(_sheet)) {
      const std::string scope = name.scope == Sheet::kScopeWorkbook ? " of the book" : " of the sheet";
      const std::string range = name.range.rowFirst < 0 ? "no range" : rangeText(name.range);
      put(Subject::names, "name " + narrowText(name.name) + scope, range + (name.hidden ? " hidden" : ""));
    }
  }

  void comments() {
    for (const CellComment& comment : tools::comments(_book, _sheet)) {
      put(Subject::comments, "comment " + addressText(comment.row, comment.col), narrowText(comment.text));
    }
  }

  void pictures() {
    for (int i = 0; i < _sheet.pictureSize(); ++i) {
      CellRange cells;
      const int id = _sheet.getPicture(i, &cells.rowFirst, &cells.colFirst, &cells.rowLast, &cells.colLast, nullptr,
                                       nullptr, nullptr, nullptr);
      const void* data = nullptr;
      std::size_t size = 0;
      std::string content = "unreadable";
      if (id >= 0 && _book.getPicture(id, &data, &size) != PictureType::notFound) content = digest(data, size);
      put(Subject::pictures, "picture " + std::to_string(i + 1), rangeText(cells) + " " + content);
    }
  }

  void page() {
    const auto put = [this](const char* what, const std::string& value) { this->put(Subject::page, what, value); };
    put("landscape", flag(_sheet.landscape()));
    put("paper", std::to_string(_sheet.paper()));
    put("header", text(_sheet.header()));
    put("footer", text(_sheet.footer()));
    put("header margin", numberText(_sheet.headerMargin()));
    put("footer margin", numberText(_sheet.footerMargin()));
    put("left margin", numberText(_sheet.marginLeft()));
    put("right margin", numberText(_sheet.marginRight()));
    put("top margin", numberText(_sheet.marginTop()));
    put("bottom margin", numberText(_sheet.marginBottom()));
    put("centred across", flag(_sheet.hCenter()));
    put("centred down", flag(_sheet.vCenter()));
    put("gridlines printed", flag(_sheet.printGridlines()));
    put("headings printed", flag(_sheet.printRowCol()));
    put("print zoom", std::to_string(_sheet.printZoom()));
    int wide = 0, high = 0;
    if (_sheet.getPrintFit(&wide, &high)) put("fit to pages", std::to_string(wide) + " x " + std::to_string(high));
    CellRange range;
    if (_sheet.printArea(&range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast)) {
      put("print area", rangeText(range));
    }
    if (_sheet.printRepeatRows(&range.rowFirst, &range.rowLast)) {
      put("repeated rows", std::to_string(range.rowFirst + 1) + "-" + std::to_string(range.rowLast + 1));
    }
    if (_sheet.printRepeatCols(&range.colFirst, &range.colLast)) {
      put("repeated columns", std::to_string(range.colFirst + 1) + "-" + std::to_string(range.colLast + 1));
    }
    put("row breaks", listText(_sheet.getHorzPageBreakSize(), [this](int i) { return _sheet.getHorzPageBreak(i); }));
    put("column breaks", listText(_sheet.getVertPageBreakSize(), [this](int i) { return _sheet.getVertPageBreak(i); }));
  }

  void view() {
    const auto put = [this](const char* what, const std::string& value) { this->put(Subject::view, what, value); };
    put("state", std::to_string(static_cast<int>(_sheet.hidden())));
    put("gridlines", flag(_sheet.displayGridlines()));
    put("zoom", std::to_string(_sheet.zoom()));
    put("right to left", flag(_sheet.rightToLeft()));
    put("summary below", flag(_sheet.groupSummaryBelow()));
    put("summary right", flag(_sheet.groupSummaryRight()));
    int row = 0, col = 0;
    if (_sheet.splitInfo(&row, &col)) put("frozen at", addressText(row, col));
    row = col = 0;
    _sheet.getTopLeftView(&row, &col);
    put("top left cell", addressText(row, col));
  }

  Book& _book;
  Sheet& _sheet;
  const std::set<Subject>& _wanted;
  Facts _facts;
};

template <class Size, class Hidden>
std::vector<LineRun> runs(int count, Size&& size, Hidden&& hidden) {
  std::vector<LineRun> found;
  for (int i = 0; i < count; ++i) {
    const LineRun line{i, i, size(i), hidden(i)};
    if (!found.empty() && found.back().size == line.size && found.back().hidden == line.hidden) {
      found.back().last = i;
    } else {
      found.push_back(line);
    }
  }
  return found;
}

}  // namespace

const char* subjectName(Subject subject) {
  return kSubjectNames[static_cast<std::size_t>(subject)];
}

const std::vector<Subject>& allSubjects() {
  static const std::vector<Subject> kAll = {
      Subject::values, Subject::formulas, Subject::formats,  Subject::comments, Subject::merges, Subject::links,
      Subject::names,  Subject::sizes,    Subject::pictures, Subject::page,     Subject::view,   Subject::protection};
  return kAll;
}

Facts sheetFacts(Book& book, Sheet& sheet, const std::set<Subject>& wanted) {
  return Collector(book, sheet, wanted).run();
}

std::vector<NamedRange> namedRanges(Sheet& sheet) {
  std::vector<NamedRange> names;
  for (int i = 0; i < sheet.namedRangeSize(); ++i) {
    NamedRange name;
    const char16_t* found = sheet.namedRange(i, &name.range.rowFirst, &name.range.rowLast, &name.range.colFirst,
                                             &name.range.colLast, &name.scope, &name.hidden);
    if (found == nullptr || isBuiltIn(found)) continue;
    name.name = found;
    names.push_back(name);
  }
  return names;
}

std::vector<Hyperlink> hyperlinks(Sheet& sheet) {
  std::vector<Hyperlink> links;
  for (int i = 0; i < sheet.hyperlinkSize(); ++i) {
    Hyperlink link;
    const char16_t* target =
        sheet.hyperlink(i, &link.range.rowFirst, &link.range.rowLast, &link.range.colFirst, &link.range.colLast);
    if (target == nullptr) continue;
    link.target = target;
    links.push_back(link);
  }
  return links;
}

std::vector<CellRange> merges(Sheet& sheet) {
  std::vector<CellRange> ranges;
  for (int i = 0; i < sheet.mergeSize(); ++i) {
    CellRange range;
    if (sheet.merge(i, &range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast)) ranges.push_back(range);
  }
  return ranges;
}

std::vector<CellComment> comments(Book& book, Sheet& sheet) {
  std::vector<CellComment> found;
  const int usedRows = sheet.lastRow(), usedCols = sheet.lastCol();
  const int rows = std::max(usedRows, kCommentRows);
  for (int row = 0; row < rows; ++row) {
    const int cols = row < kCommentRows ? std::max(usedCols, kCommentCols) : usedCols;
    for (int col = 0; col < cols; ++col) {
      const char16_t* text = sheet.readComment(row, col);
      if (text != nullptr) found.push_back({row, col, text});
      // A sheet without a comments part says so in the first cell already; it may have millions of rows.
      else if (book.errorMessage() == kNoComments)
        return found;
    }
  }
  return found;
}

std::vector<LineRun> rowRuns(Sheet& sheet, const std::string& form) {
  const int count = std::min(rowLimit(form), std::max(kRowsAlwaysRead, sheet.lastRow()));
  return runs(
      count, [&](int row) { return sheet.rowHeight(row); }, [&](int row) { return sheet.rowHidden(row); });
}

std::vector<LineRun> columnRuns(Sheet& sheet, const std::string& form) {
  return runs(
      colLimit(form), [&](int col) { return sheet.colWidth(col); }, [&](int col) { return sheet.colHidden(col); });
}

}  // namespace rubrica::tools
