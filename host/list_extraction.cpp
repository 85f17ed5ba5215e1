// $extractList: the used cells of the first sheet become a host list.
#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/format.hpp>

#include "host/cell_value.h"
#include "host/column_letters.h"
#include "host/index_base.h"
#include "host/list_methods.h"
#include "host/list_style.h"
#include "host/parameters.h"

namespace rubrica::host {
namespace {

enum Style {
  noHeader = 0,
  ignoreHeader = 1,
  defineFromHeader = 2,
  customDefine = 3,
  customDefineIgnoreHeader = 4,
  mapFromHeader = 5
};

// More columns than this are left out.
constexpr int kMaxColumns = 255;

// A few rows are filled column by column: cells below each other lie together, in the list as in the sheet, and few
// rows of all columns stay in the cache.
constexpr int kRowsTogether = 32;

bool skipsHeader(int style) {
  return style != noHeader && style != customDefine;
}
bool needsDefinition(int style) {
  return style >= customDefine;
}
bool isNamedByHeader(int style) {
  return style == defineFromHeader || style == mapFromHeader;
}

class Extraction {
 public:
  Extraction(NVObjWorkbook& self, MethodCall& call, Sheet& sheet, int style, const HostList& definition)
      : _book(*self.book),
        _sheet(sheet),
        _style(style),
        _definition(definition),
        _scratch(call.host.newField()),
        _list(HostList::make(call.host.context())),
        _firstColumn(sheet.firstCol()),
        _columns(std::min(sheet.lastCol() - _firstColumn, kMaxColumns)),
        _headerRow(toHost(sheet.firstRow())),
        _rowBase(skipsHeader(style) ? _headerRow : sheet.firstRow()),
        _rows(sheet.lastRow() - sheet.firstRow() - (skipsHeader(style) ? 1 : 0)) {}

  HostList run() {
    if (_style == mapFromHeader) addDefinedColumns();
    for (int i = 1; i <= _columns; ++i) addColumn(i);
    fillRows();
    return std::move(_list);
  }

 private:
  // Row and column count from 1.
  void readCellTo(HostField& field, int row, int column) {
    readCell(_book, _sheet, toEngine(row), toEngine(column), field);
  }

  void addDefinedColumns() {
    const int count = std::min<int>(_definition.columnCount(), kMaxColumns);
    for (int i = 1; i <= count; ++i) {
      const std::u32string name = _definition.columnName(i);
      _definedColumns[name] = i;
      _list.addColumn(name, _definition.columnType(i));
    }
  }

  std::u32string columnNameFor(int i, int column) {
    std::u32string name;
    if (isNamedByHeader(_style)) {
      readCellTo(_scratch, _headerRow, column);
      name = _scratch.utf32();
    } else if (needsDefinition(_style)) {
      name = _definition.columnName(i);
    }
    return name.empty() ? columnLetters(column) : name;
  }

  void addColumn(int i) {
    const int column = i + _firstColumn;
    const std::u32string name = columnNameFor(i, column);
    if (_style == mapFromHeader) {
      const auto found = _definedColumns.find(name);
      _listColumnOf[column] = found != _definedColumns.end() ? found->second : 0;
      return;
    }
    _listColumnOf[column] = column;
    readCellTo(_scratch, _rowBase + 1, column);
    const std::int32_t type = _scratch.type();
    _list.addColumn(name, {type, _scratch.subtype(), type == kind::character ? kLongTextLength : 0});
  }

  // The target columns are kept by sheet column and asked for by position. Both are the same where the used range
  // begins in the first column; elsewhere values land beside their headings, as callers know it.
  int listColumnAt(int position) const {
    const auto found = _listColumnOf.find(position);
    return found != _listColumnOf.end() ? found->second : 0;
  }

  void fillRows() {
    std::vector<int> targets(static_cast<std::size_t>(std::max(_columns, 0)) + 1);
    for (int i = 1; i <= _columns; ++i) targets[static_cast<std::size_t>(i)] = listColumnAt(i);
    for (int first = 1; first <= _rows; first += kRowsTogether) {
      const int wanted = std::min(first + kRowsTogether, _rows + 1), end = addRows(first, wanted);
      for (int i = 1; i <= _columns; ++i) {
        for (int row = first; row < end; ++row) {
          HostField field = _list.bindCell(row, targets[static_cast<std::size_t>(i)]);
          if (field) readCellTo(field, _rowBase + row, i + _firstColumn);
        }
      }
      if (end < wanted) break;
    }
  }

  // Answers the row behind those that the list took.
  int addRows(int first, int end) {
    while (first < end && _list.addRow() != 0) ++first;
    return first;
  }

  Book& _book;
  Sheet& _sheet;
  const int _style;
  const HostList& _definition;
  HostField _scratch;
  HostList _list;
  const int _firstColumn;  // 0-based
  const int _columns;
  const int _headerRow;  // the first used row, from 1
  const int _rowBase;    // the row before the first data row, from 1
  const int _rows;
  std::unordered_map<std::u32string, int> _definedColumns;
  std::unordered_map<int, int> _listColumnOf;
};

}  // namespace

int extractList(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int style = listStyle(call.host.parameter(1));
  if (style > mapFromHeader) return code::badParameters;
  const HostField definitionField = call.host.parameter(2);
  const bool hasDefinition = definitionField.type() == kind::list;
  if (needsDefinition(style) && !hasDefinition) return in.fail("List in 2nd parameter is not recognized.");
  const int sheets = self.book->sheetCount();
  if (sheets < 1) {
    return in.fail((boost::format("Invalid sheet count.  Expected greater then 0, got %d.") % sheets).str(),
                   code::badCalculation);
  }
  Sheet* sheet = self.book->getSheet(0);
  if (sheet == nullptr) {
    return in.fail((boost::format("Worksheet object returned empty. Error: %s") % self.book->errorMessage()).str(),
                   code::failed);
  }
  const HostList definition = hasDefinition ? HostList::borrow(definitionField) : HostList::borrow(HostField());
  call.host.returnList(Extraction(self, call, *sheet, style, definition).run());
  return code::done;
}

}  // namespace rubrica::host
