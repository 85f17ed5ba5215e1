#include "tools/name_places.h"

#include "tools/sheet_facts.h"

namespace rubrica::tools {
namespace {

using Ranges = std::map<std::u16string, CellRange>;

Ranges rangesOfBookNames(Sheet& sheet) {
  Ranges ranges;
  for (const NamedRange& name : namedRanges(sheet)) {
    if (name.scope == Sheet::kScopeWorkbook && name.range.rowFirst >= 0) ranges[name.name] = name.range;
  }
  return ranges;
}

}  // namespace

std::map<std::u16string, int> sheetsOfBookNames(const OpenedBook& opened, Sheet& first) {
  std::map<std::u16string, int> places;
  Ranges before = rangesOfBookNames(first);
  if (before.empty()) return places;
  if (opened.book->sheetCount() == 1) {
    for (const auto& [name, range] : before) places[name] = 0;
    return places;
  }
  const OpenedBook scratch = openBook(opened.path);
  if (scratch.book == nullptr) return places;
  for (int i = 0; i < scratch.book->sheetCount(); ++i) {
    Sheet* sheet = scratch.book->getSheet(i);
    if (sheet == nullptr || !sheet->insertRow(0, 0, true)) continue;
    Ranges after = rangesOfBookNames(*sheet);
    for (const auto& [name, range] : after) {
      if (!places.contains(name) && range != before[name]) places[name] = i;
    }
    before = std::move(after);
  }
  return places;
}

}  // namespace rubrica::tools
