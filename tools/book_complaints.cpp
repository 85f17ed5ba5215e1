#include "tools/book_complaints.h"

#include <algorithm>
#include <map>
#include <set>

#include "engine/address.h"
#include "engine/xlerror.h"
#include "tools/book_opener.h"
#include "tools/sheet_facts.h"

namespace rubrica::tools {
namespace {

constexpr std::size_t kMostSheetNameCharacters = 31, kMostDefinedNameCharacters = 255, kMostHeaderCharacters = 255;

char16_t small(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

std::u16string folded(std::u16string_view text) {
  std::u16string result(text);
  std::transform(result.begin(), result.end(), result.begin(), small);
  return result;
}

bool isDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// Letters of any script count as such.
bool startsName(char16_t c) {
  const char16_t letter = small(c);
  return (letter >= u'a' && letter <= u'z') || c == u'_' || c == u'\\' || c > 0x7F;
}

// A name that reads as a cell, in either way of writing one, can't be told from it in a formula.
bool looksLikeCell(std::u16string_view name, const std::string& form) {
  try {
    const CellAddress address = parseAddress(name);
    if (address.row < rowLimit(form) && address.col < colLimit(form)) return true;
  } catch (const xlerror&) {
  }
  const std::u16string text = folded(name);
  std::size_t at = 0;
  const auto digits = [&] {
    while (at < text.size() && isDigit(text[at])) ++at;
  };
  if (text[at] == u'r') {
    ++at;
    digits();
  }
  if (at < text.size() && text[at] == u'c') {
    ++at;
    digits();
  }
  return at == text.size();
}

bool overlap(const CellRange& a, const CellRange& b) {
  return a.rowFirst <= b.rowLast && b.rowFirst <= a.rowLast && a.colFirst <= b.colLast && b.colFirst <= a.colLast;
}

// By their first rows, each range is compared with those that reach down to it.
void complainOfMerges(const std::string& sheet, std::vector<CellRange> ranges, std::vector<std::string>& complaints) {
  std::sort(ranges.begin(), ranges.end());
  std::multimap<int, CellRange> open;  // by last row
  for (const CellRange& range : ranges) {
    open.erase(open.begin(), open.lower_bound(range.rowFirst));
    for (const auto& [last, other] : open) {
      if (!overlap(range, other)) continue;
      complaints.push_back("sheet \"" + sheet + "\": the merged ranges " + rangeText(other) + " and " +
                           rangeText(range) + " overlap");
    }
    open.emplace(range.rowLast, range);
  }
}

void complainOfHeaders(const std::string& sheet, const char* what, const char16_t* text,
                       std::vector<std::string>& complaints) {
  if (text != nullptr && std::u16string_view(text).size() > kMostHeaderCharacters) {
    complaints.push_back("sheet \"" + sheet + "\": the " + what + " has more than 255 characters");
  }
}

void complainOfNames(Book& book, const std::string& form, std::vector<std::string>& complaints) {
  std::set<std::pair<int, std::u16string>> seen;
  for (int i = 0; i < book.sheetCount(); ++i) {
    Sheet* sheet = book.getSheet(i);
    if (sheet == nullptr) continue;  // a chart
    for (const NamedRange& name : namedRanges(*sheet)) {
      const bool ofBook = name.scope == Sheet::kScopeWorkbook;
      if (ofBook && i > 0) continue;
      const std::string why = definedNameComplaint(name.name, form);
      if (!why.empty()) complaints.push_back("name \"" + narrowText(name.name) + "\": " + why);
      if (!seen.emplace(name.scope, folded(name.name)).second) {
        complaints.push_back("name \"" + narrowText(name.name) + "\" stands twice");
      }
    }
  }
}

}  // namespace

std::string sheetNameComplaint(std::u16string_view name) {
  if (name.empty()) return "a sheet name can't be empty";
  if (name.size() > kMostSheetNameCharacters) return "a sheet name has at most 31 characters";
  const std::size_t bad = name.find_first_of(u"[]:*?/\\");
  if (bad != name.npos) return "a sheet name can't hold \"" + narrowText(name.substr(bad, 1)) + "\"";
  if (name.front() == u'\'' || name.back() == u'\'') return "a sheet name can't begin or end with an apostrophe";
  const bool control = std::any_of(name.begin(), name.end(), [](char16_t c) { return c < 0x20; });
  return control ? "a sheet name can't hold control characters" : std::string();
}

std::string definedNameComplaint(std::u16string_view name, const std::string& form) {
  if (name.empty()) return "a name can't be empty";
  if (name.size() > kMostDefinedNameCharacters) return "a name has at most 255 characters";
  if (!startsName(name.front())) return R"(a name begins with a letter, "_" or "\")";
  for (const char16_t c : name) {
    if (!startsName(c) && !isDigit(c) && c != u'.' && c != u'?') {
      return "a name can't hold \"" + narrowText(std::u16string_view(&c, 1)) + "\"";
    }
  }
  return looksLikeCell(name, form) ? "a name can't look like a cell" : std::string();
}

std::vector<std::string> bookComplaints(Book& book, const std::string& form) {
  std::vector<std::string> complaints;
  std::set<std::u16string> names;
  bool anyVisible = false;
  for (int i = 0; i < book.sheetCount(); ++i) {
    const std::u16string name = book.getSheetName(i);
    const std::string why = sheetNameComplaint(name);
    if (!why.empty()) complaints.push_back("sheet \"" + narrowText(name) + "\": " + why);
    if (!names.insert(folded(name)).second) complaints.push_back("sheet \"" + narrowText(name) + "\" stands twice");
    Sheet* sheet = book.getSheet(i);
    anyVisible = anyVisible || sheet == nullptr || sheet->hidden() == SheetState::visible;
    if (sheet == nullptr) continue;  // a chart
    complainOfMerges(narrowText(name), merges(*sheet), complaints);
    complainOfHeaders(narrowText(name), "header", sheet->header(), complaints);
    complainOfHeaders(narrowText(name), "footer", sheet->footer(), complaints);
  }
  if (book.sheetCount() == 0) complaints.emplace_back("the book has no sheet");
  if (book.sheetCount() > 0 && !anyVisible) complaints.emplace_back("all sheets are hidden");
  if (book.sheetCount() > 0 && (book.activeSheet() < 0 || book.activeSheet() >= book.sheetCount())) {
    complaints.push_back("the active sheet is number " + std::to_string(book.activeSheet() + 1) + " of " +
                         std::to_string(book.sheetCount()));
  }
  complainOfNames(book, form, complaints);
  return complaints;
}

}  // namespace rubrica::tools
