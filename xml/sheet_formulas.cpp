// Formulas of cells, which are text here: reading and writing them, and the groups that share one.
#include <algorithm>

#include "engine/address.h"
#include "engine/xlerror.h"
#include "source/ooxml/cell_address.h"
#include "xml/book_impl.h"
#include "xml/formula_text.h"
#include "xml/number_text.h"
#include "xml/sheet_impl.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

using ooxml::cell_type;

constexpr std::string_view kShared = "shared";

// "A1:B2" or "A1", where it lies within a sheet.
bool parseRange(std::string_view text, SharedFormulaGroup& group) {
  const std::size_t colon = text.find(':');
  std::uint32_t row = 0, lastRow = 0;
  std::uint16_t col = 0, lastCol = 0;
  if (!ooxml::parseCellAddress(text.substr(0, colon), row, col)) return false;
  lastRow = row;
  lastCol = col;
  if (colon != text.npos && !ooxml::parseCellAddress(text.substr(colon + 1), lastRow, lastCol)) return false;
  group.firstRow = static_cast<int>(std::min(row, lastRow));
  group.lastRow = static_cast<int>(std::max(row, lastRow));
  group.firstCol = std::min(col, lastCol);
  group.lastCol = std::max(col, lastCol);
  return group.lastRow <= kMaxRow && group.lastCol <= kMaxCol;
}

template <class Formula>
bool isMember(const Formula* formula) {
  return formula != nullptr && formula->get_t() == kShared && formula->isset_si();
}

template <class Formula>
bool isMaster(const Formula* formula) {
  return isMember(formula) && formula->isset_ref();
}

template <class Cell>
std::string storedFormula(const Cell& cell) {
  if (const auto text = cell.view_f()) return std::string(*text);
  const auto* formula = cell.find_full_f();
  return formula == nullptr ? std::string() : formula->get_value();
}

}  // namespace

template <class Tag>
void XMLSheetImplT<Tag>::adoptSharedFormulas() {
  const auto& data = this->get_sheetData();
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    const Row& row = data.get_row(i);
    for (std::size_t k = 0; k < row.size_c(); ++k) {
      const auto* formula = row.get_c(k).find_full_f();
      if (!isMaster(formula)) continue;
      SharedFormulaGroup group;
      if (!parseRange(formula->get_ref(), group)) continue;
      group.row = static_cast<int>(row.get_r()) - 1;
      group.col = row.get_c(k).column();
      group.scanRow = group.firstRow;
      group.scanCol = group.firstCol;
      _sharedFormulas.insert_or_assign(formula->get_si(), group);
    }
  }
}

// The first other member of the range becomes the master, with the text that it had by its place. A group without
// another member ends.
template <class Tag>
void XMLSheetImplT<Tag>::handOverSharedFormula(int row, int col, Cell& cell) {
  if (!isMaster(cell.find_full_f())) return;
  const auto formula = *cell.find_full_f();
  const auto known = _sharedFormulas.find(formula.get_si());
  if (known == _sharedFormulas.end() || known->second.row != row || known->second.col != col) return;
  SharedFormulaGroup& group = known->second;
  auto& data = this->get_sheetData();
  for (std::size_t i = rowPosition(data, group.scanRow); i < data.size_row(); ++i) {
    Row& members = data.get_row(i);
    const int number = static_cast<int>(members.get_r()) - 1;
    if (number > group.lastRow) break;
    const int first = number == group.scanRow ? group.scanCol : group.firstCol;
    for (std::size_t k = cellPosition(members, first); k < members.size_c(); ++k) {
      Cell& member = members.get_c(k);
      if (member.column() > group.lastCol) break;
      if ((number == row && member.column() == col) || !isMember(member.find_full_f()) ||
          member.find_full_f()->get_si() != formula.get_si()) {
        continue;
      }
      member.get_f().set_ref(formula.get_ref());
      if (!member.get_f().isset_value() || member.get_f().get_value().empty()) {
        member.get_f().set_value(shiftReferences(formula.get_value(), number - row, member.column() - col));
      }
      group.row = group.scanRow = number;
      group.col = group.scanCol = member.column();
      return;
    }
  }
  _sharedFormulas.erase(known);
}

template <class Tag>
std::string XMLSheetImplT<Tag>::formulaText(int row, int col, const Cell& cell) {
  const auto* formula = cell.find_full_f();
  if (!isMember(formula) || !formula->get_value().empty()) return storedFormula(cell);
  const auto known = _sharedFormulas.find(formula->get_si());
  if (known == _sharedFormulas.end()) return {};
  const SharedFormulaGroup& group = known->second;
  const Cell* master = findCell(group.row, group.col);
  if (master == nullptr || !master->isset_f()) return {};
  return shiftReferences(storedFormula(*master), row - group.row, col - group.col);
}

template <class Tag>
auto XMLSheetImplT<Tag>::readFormula(int row, int col, FormatPtr* format) -> Text {
  if (format != nullptr) *format = nullptr;
  return guarded(_book->lastMessage(), Text{}, [&] {
    const Cell& cell = cellAt(row, col);
    if (!cell.isset_f()) throw xlerror("this cell doesn't contain a formula");
    giveFormat(cell, col, format);
    std::string formula = formulaText(row, col, cell);
    if (_book->refR1C1()) formula = r1c1FromA1(formula, row, col);
    fromXstring(formula, _text);
    if (_book->listSeparator() == u';') std::replace(_text.begin(), _text.end(), u',', u';');
    return _text.c_str();
  });
}

// Both separators are taken, wherever they stand: no parse tells those of the formula from those of its texts.
template <class Tag>
template <class StoreValue>
bool XMLSheetImplT<Tag>::storeFormula(int row, int col, Text expression, FormatPtr format, StoreValue storeValue) {
  return guarded(_book->lastMessage(), false, [&] {
    std::u16string_view given = viewOf(expression);
    if (!given.empty() && given.front() == u'=') given.remove_prefix(1);
    std::string formula = toXstring(given);
    std::replace(formula.begin(), formula.end(), ';', ',');
    if (_book->refR1C1()) formula = a1FromR1c1(formula, row, col);
    Cell& cell = emptyCell(row, col, format);
    cell.set_f(formula);
    storeValue(cell);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeFormula(int row, int col, Text expression, FormatPtr format) {
  return storeFormula(row, col, expression, format, [](Cell&) {});
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeFormulaNum(int row, int col, Text expression, double value, FormatPtr format) {
  return storeFormula(row, col, expression, format, [value](Cell& cell) {
    NumberBuffer buffer;
    cell.set_v(numberText(value, buffer));
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeFormulaStr(int row, int col, Text expression, Text value, FormatPtr format) {
  if (viewOf(value).size() > kMaxCellText) {
    _book->lastMessage().setMessage("string is too long");
    return false;
  }
  return storeFormula(row, col, expression, format, [value](Cell& cell) {
    cell.set_type(cell_type::text);
    cell.set_v(toXstring(viewOf(value)));
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeFormulaBool(int row, int col, Text expression, bool value, FormatPtr format) {
  return storeFormula(row, col, expression, format, [value](Cell& cell) {
    cell.set_type(cell_type::boolean);
    cell.set_v(value ? "1" : "0");
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
