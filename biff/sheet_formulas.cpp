// Formula cells of an .xls sheet: text to tokens and back, cached values, shared and array formulas.
#include "biff/book_impl.h"
#include "biff/expression_walk.h"
#include "biff/sheet_impl.h"
#include "formula/compile.h"
#include "formula/print.h"
#include "formula/ptg.h"

namespace rubrica {
namespace {

constexpr std::size_t kFormulaHeadSize = 22;  // of a Formula record, up to its tokens
constexpr std::size_t kMaxTokens = kMaxRecordSize - kFormulaHeadSize;
constexpr std::size_t kMaxCachedText = 32767;  // characters

void put16(std::uint8_t* place, int value) {
  place[0] = static_cast<std::uint8_t>(value & 0xFF);
  place[1] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

// Turns the row and column word at `place` from offsets into the place that they mean for a cell.
void resolveOffsets(std::uint8_t* row, std::uint8_t* col, int cellRow, int cellCol) {
  const int word = col[0] | col[1] << 8;
  if ((word & formula::kRowRelative) != 0) put16(row, (row[0] | row[1] << 8) + cellRow);
  if ((word & formula::kColumnRelative) != 0) {
    put16(col, (word & ~formula::kColumnBits) | (((word & 0xFF) + cellCol) & 0xFF));
  }
}

// PtgRefN and PtgAreaN become PtgRef and PtgArea.
void resolveToken(std::uint8_t* token, int cellRow, int cellCol) {
  constexpr int kToPlain = formula::ptg::RefN - formula::ptg::Ref;
  switch (formula::baseToken(token[0])) {
    case formula::ptg::RefN:
      resolveOffsets(token + 1, token + 3, cellRow, cellCol);
      break;
    case formula::ptg::AreaN:
      resolveOffsets(token + 1, token + 5, cellRow, cellCol);
      resolveOffsets(token + 3, token + 7, cellRow, cellCol);
      break;
    default:
      return;
  }
  token[0] = static_cast<std::uint8_t>(token[0] - kToPlain);
}

}  // namespace

SheetImplT::Expression SheetImplT::ownExpression(const FormulaCell& cell) {
  const FormulaDefinition* definition = _definitions.of(cell);
  const auto shared = definition != nullptr ? definitionTokens(*definition) : std::nullopt;
  const auto tokens = shared ? shared->tokens : octets(cell.tokens());
  const auto constants = shared ? shared->constants : octets(cell.expression.subspan(cell.tokenSize));
  Expression own{{tokens.begin(), tokens.end()}, tokens.size()};
  own.bytes.insert(own.bytes.end(), constants.begin(), constants.end());
  if (!shared || !shared->relative) return own;
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) resolveToken(own.bytes.data() + token.offset, cell.row, cell.col);
  return own;
}

std::u16string SheetImplT::formulaText(const FormulaCell& cell) {
  const FormulaDefinition* definition = _definitions.of(cell);
  const auto shared = definition != nullptr ? definitionTokens(*definition) : std::nullopt;
  const auto tokens = shared ? shared->tokens : octets(cell.tokens());
  return formula::printFormula(tokens, _book->formulaAccess(), shared && shared->relative, cell.row, cell.col);
}

SheetImplT::Text SheetImplT::readFormula(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(state(), Text{}, [&]() -> Text {
    const CellWord word = cellAt(row, col);
    if (word.kind() != CellKind::formula) throw xlerror("cell doesn't contain a formula");
    _formulaText = formulaText(_cells.formula(word));
    giveFormat(word, format);
    return _formulaText.c_str();
  });
}

void SheetImplT::putFormula(const FormulaCell& cell) {
  const CellWord word = _cells.word(cell.row, cell.col);
  if (word.kind() == CellKind::formula) {
    _cells.formula(word) = cell;
  } else {
    _cells.addFormula(cell);
  }
  widenDimensions(cell.row, cell.col);
}

bool SheetImplT::storeFormula(int row, int col, Text expression, const FormulaValue& value, Text text,
                              FormatPtr format) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    FormulaCell cell;
    cell.row = static_cast<std::uint16_t>(row);
    cell.col = static_cast<std::uint16_t>(col);
    cell.xf = xfFor(format, word, col);
    LinkTable::Addition links(_book->links());
    const auto tokens =
        _book->formulaCompiler().compile(expression == nullptr ? u"" : expression, _book->formulaAccess(),
                                         _book->positionOf(*this), ISheetT::kScopeUndefined);
    if (tokens.size() > kMaxTokens) throw xlerror("formula is too long");
    cell.expression = state().pool.copyBytes(rawBytes(tokens));
    cell.tokenSize = static_cast<std::uint16_t>(tokens.size());
    cell.grbit = FormulaCell::kCalcOnLoad;
    const auto error = formula::leadingErrorCode(tokens);
    cell.value = error ? FormulaValue::of(FormulaValue::Kind::error, *error) : value;
    if (text != nullptr) {
      const std::u16string_view cached = text;
      if (cached.size() > kMaxCachedText) throw xlerror("string is too long");
      cell.text = cached.empty() ? u"" : state().pool.copyText(cached);
      cell.textLength = static_cast<std::uint16_t>(cached.size());
    }
    putFormula(cell);
    links.keep();
    return true;
  });
}

bool SheetImplT::writeFormula(int row, int col, Text expression, FormatPtr format) {
  return storeFormula(row, col, expression, FormulaValue::ofNumber(0.0), nullptr, format);
}

bool SheetImplT::writeFormulaNum(int row, int col, Text expression, double value, FormatPtr format) {
  return storeFormula(row, col, expression, FormulaValue::ofNumber(value), nullptr, format);
}

bool SheetImplT::writeFormulaStr(int row, int col, Text expression, Text value, FormatPtr format) {
  const Text text = value == nullptr ? u"" : value;
  return storeFormula(row, col, expression, FormulaValue::of(FormulaValue::Kind::string), text, format);
}

bool SheetImplT::writeFormulaBool(int row, int col, Text expression, bool value, FormatPtr format) {
  return storeFormula(row, col, expression, FormulaValue::of(FormulaValue::Kind::boolean, value ? 1 : 0), nullptr,
                      format);
}

// References stay as they are: those of a shared formula are resolved for the source cell first. A member of a data
// table has no formula outside the table: its copy is its value.
bool SheetImplT::copyFormula(CellWord source, int rowDst, int colDst) {
  FormulaCell copy = _cells.formula(source);
  const Expression own = ownExpression(copy);
  copy.row = static_cast<std::uint16_t>(rowDst);
  copy.col = static_cast<std::uint16_t>(colDst);
  if (own.isMember()) {
    addCachedValue(copy);
    widenDimensions(rowDst, colDst);
    return true;
  }
  holdOwnExpression(copy, own);
  putFormula(copy);
  return true;
}

void SheetImplT::holdOwnExpression(FormulaCell& cell, const Expression& own) {
  cell.tokenSize = static_cast<std::uint16_t>(own.tokenSize);
  cell.expression = state().pool.copyBytes(rawBytes(own.bytes));
  cell.grbit = static_cast<std::uint16_t>(cell.grbit & ~FormulaCell::kSharedFormula);
}

void SheetImplT::addCachedValue(const FormulaCell& cell) {
  switch (cachedType(cell.value)) {
    case CellType::number:
      return _cells.addNumber(cell.row, cell.col, cell.xf, cell.value.number());
    case CellType::string:
      return _cells.addLabelSst(cell.row, cell.col, cell.xf, _book->addSharedString(cell.cachedText()));
    case CellType::boolean:
    case CellType::error:
      return _cells.addBoolErr(cell.row, cell.col, cell.xf, cell.value.payload(),
                               cachedType(cell.value) == CellType::error);
    case CellType::blank:
    case CellType::empty:
      return _cells.addBlank(cell.row, cell.col, cell.xf);
  }
}

// Expressions may be shared with the copy of a sheet: what changes gets bytes of its own.
void SheetImplT::renumberNames(const NameMapping& mapping) {
  std::vector<std::uint8_t> bytes;
  const auto renumber = [&](std::span<const std::byte>& expression, std::size_t offset, std::size_t size) {
    const auto present = octets(expression);
    bytes.assign(present.begin(), present.end());
    const auto tokens = std::span(bytes).subspan(offset, size);
    if (rubrica::renumberNames(tokens, mapping, _book->links())) expression = state().pool.copyBytes(rawBytes(bytes));
  };
  const SheetIndex& index = _cells.index();
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) {
    index.forEachInRow(row, [&](int, std::uint32_t bits) {
      const CellWord word{bits};
      if (word.kind() != CellKind::formula) return;
      FormulaCell& cell = _cells.formula(word);
      renumber(cell.expression, 0, cell.tokenSize);
    });
  }
  _definitions.forEach([&](FormulaDefinition& definition) {
    const auto tokens = definitionTokens(definition);
    if (!tokens) return;
    const auto offset = static_cast<std::size_t>(tokens->tokens.data() - octets(definition.bytes).data());
    renumber(definition.bytes, offset, tokens->tokens.size());
  });
}

}  // namespace rubrica
