#include "formula/print.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "formula/byte_stream.h"
#include "formula/function_table.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/token_walk.h"

namespace rubrica::formula {
namespace {

constexpr std::u16string_view unknownItem = u"?";

std::u16string decimalText(unsigned value) {
  const std::string digits = std::to_string(value);
  return std::u16string(digits.begin(), digits.end());
}

std::u16string functionText(std::u16string_view name, unsigned count) {
  return std::u16string(name) + decimalText(count) + postfix::kFunctionEnd;
}

// Turns one token after the other into its postfix item.
class ItemPrinter {
 public:
  ItemPrinter(const BookAccess& book, bool relative, int row, int col)
      : _book(book), _relative(relative), _row(row), _col(col) {}

  // The item of a whole token, which is taken from the stream. Empty for tokens that add nothing.
  std::u16string item(ByteStream& token);

 private:
  static std::u16string stringItem(ByteStream& token);
  static std::u16string attrItem(ByteStream& token);
  static std::u16string errorItem(ByteStream& token);
  static std::u16string fixedFunctionItem(ByteStream& token);
  static std::u16string variableFunctionItem(ByteStream& token);
  std::u16string nameItem(ByteStream& token) const;
  std::u16string referenceItem(std::uint8_t base, ByteStream& token) const;
  std::u16string sheetItem(std::uint8_t base, ByteStream& token) const;
  std::u16string addressItem(bool isOffset, std::uint16_t row, std::uint16_t columnWord) const;
  std::u16string rangeItem(bool isOffset, ByteStream& token) const;

  const BookAccess& _book;
  bool _relative;
  int _row;
  int _col;
};

std::u16string ItemPrinter::item(ByteStream& token) {
  const std::uint8_t first = token.popByte();
  if (first >= ptg::Add && first <= ptg::Ne) return std::u16string(binaryOperatorText(first));
  switch (first) {
    case ptg::Range:
      return std::u16string(postfix::kRange);
    case ptg::Uplus:
      return std::u16string(postfix::kUnaryPlus);
    case ptg::Uminus:
      return std::u16string(postfix::kUnaryMinus);
    case ptg::Percent:
      return std::u16string(postfix::kPercent);
    case ptg::Paren:
      return std::u16string(postfix::kParentheses);
    case ptg::MissArg:
      return u"MISS";
    case ptg::Str:
      return stringItem(token);
    case ptg::Attr:
      return attrItem(token);
    case ptg::Err:
      return errorItem(token);
    case ptg::Bool:
      return std::u16string(token.popByte() != 0 ? postfix::kTrue : postfix::kFalse);
    case ptg::Int:
      return decimalText(token.popInt16());
    case ptg::Num:
      return numberText(token.popDouble());
    case ptg::Name + kArrayClass:
      return std::u16string(unknownItem);
    case ptg::RefErr:
      return std::u16string(kRefErrorText);
    default:
      return referenceItem(baseToken(first), token);
  }
}

std::u16string ItemPrinter::referenceItem(std::uint8_t base, ByteStream& token) const {
  switch (base) {
    case ptg::Func:
      return fixedFunctionItem(token);
    case ptg::FuncVar:
      return variableFunctionItem(token);
    case ptg::Name:
      return nameItem(token);
    case ptg::Ref:
    case ptg::RefN: {
      const std::uint16_t row = token.popInt16();
      return addressItem(base == ptg::RefN, row, token.popInt16());
    }
    case ptg::Area:
    case ptg::AreaN:
      return rangeItem(base == ptg::AreaN, token);
    case ptg::MemErr:
    case ptg::RefErr:
    case ptg::AreaErr:
    case ptg::RefErr3d:
    case ptg::AreaErr3d:
      return u"ERR";
    case ptg::MemNoMem:
      return u"NOMEM";
    case ptg::MemFunc:
      return {};
    case ptg::Ref3d:
    case ptg::Area3d:
      return sheetItem(base, token);
    default:
      return std::u16string(unknownItem);
  }
}

std::u16string ItemPrinter::stringItem(ByteStream& token) {
  const std::size_t count = token.popByte();
  const bool wide = (token.popByte() & 1) != 0;
  std::u16string text = u"\"";
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t c = wide ? token.popInt16() : token.popByte();
    if (c == u'"') text += c;
    text += c;
  }
  text += u'"';
  return text;
}

std::u16string ItemPrinter::attrItem(ByteStream& token) {
  return token.popByte() == attr::Sum ? functionText(u"SUM", 1) : std::u16string();
}

std::u16string ItemPrinter::errorItem(ByteStream& token) {
  return std::u16string(errorText(token.popByte()).value_or(unknownItem));
}

std::u16string ItemPrinter::fixedFunctionItem(ByteStream& token) {
  const FunctionRow* const row = findFunction(token.popInt16());
  return row ? functionText(row->name, row->fixedCount) : functionText(unknownItem, 0);
}

std::u16string ItemPrinter::variableFunctionItem(ByteStream& token) {
  constexpr std::uint16_t firstNegative = 0x8000;
  const std::uint8_t count = token.popByte();
  const std::uint16_t number = token.popInt16();
  if (number >= firstNegative) return std::u16string(unknownItem);
  const FunctionRow* const row = findFunction(number);
  return functionText(row ? row->name : unknownItem, count);
}

std::u16string ItemPrinter::nameItem(ByteStream& token) const {
  const std::uint32_t index = token.popInt32();
  const auto text = index == 0 ? std::nullopt : _book.nameText(index - 1);
  return text.value_or(std::u16string(unknownItem));
}

std::u16string ItemPrinter::sheetItem(std::uint8_t base, ByteStream& token) const {
  std::u16string text = _book.sheetPart(token.popInt16());
  if (text == kRefErrorText) return text;
  text += u'!';
  if (base == ptg::Area3d) return text + rangeItem(false, token);
  const std::uint16_t row = token.popInt16();
  return text + addressItem(false, row, token.popInt16());
}

std::u16string ItemPrinter::rangeItem(bool isOffset, ByteStream& token) const {
  const std::uint16_t firstRow = token.popInt16();
  const std::uint16_t lastRow = token.popInt16();
  const std::uint16_t firstColumn = token.popInt16();
  const std::uint16_t lastColumn = token.popInt16();
  return addressItem(isOffset, firstRow, firstColumn) + u':' + addressItem(isOffset, lastRow, lastColumn);
}

std::u16string ItemPrinter::addressItem(bool isOffset, std::uint16_t row, std::uint16_t columnWord) const {
  CellAddress address = addressFromWords(row, columnWord);
  if (isOffset && _relative) {
    if (address.rowRelative) address.row = (address.row + _row) & 0xFFFF;
    if (address.colRelative) address.col = (address.col + _col) & 0xFF;
  }
  return addressText(address);
}

}  // namespace

std::u16string numberText(double value) {
  // A stream writes digits without an exponent from 1e-4 up to its precision, 17 digits, and exponents of two digits
  // and more.
  constexpr int lowestPlainExponent = -4;
  constexpr int plainExponentEnd = 17;
  constexpr std::size_t longestNumber = 32;
  char buffer[longestNumber];
  const auto print = [&](std::chars_format format) {
    const auto end = std::to_chars(buffer, buffer + longestNumber, value, format).ptr;
    return std::u16string(buffer, end);
  };
  if (!std::isfinite(value)) return print(std::chars_format::general);
  std::u16string text = print(std::chars_format::scientific);
  const std::size_t exponentBegin = text.find(u'e') + 1;
  const std::string exponentDigits(text.begin() + static_cast<std::ptrdiff_t>(exponentBegin), text.end());
  const int exponent = std::atoi(exponentDigits.c_str());
  if (exponent < lowestPlainExponent || exponent >= plainExponentEnd) return text;
  return print(std::chars_format::fixed);
}

std::u16string postfixFromTokens(std::span<const std::uint8_t> tokens, const BookAccess& book, bool relative, int row,
                                 int col) {
  ItemPrinter printer(book, relative, row, col);
  ByteStream stream(tokens);
  FormulaBlock block;
  std::u16string text;
  while (!stream.empty()) {
    block.takeFrom(stream);
    const std::u16string item = printer.item(block.bytes());
    if (item.empty()) continue;
    if (!text.empty()) text += u' ';
    text += item;
  }
  return text;
}

std::u16string printFormula(std::span<const std::uint8_t> tokens, const BookAccess& book, bool relative, int row,
                            int col) {
  return infixFromPostfix(postfixFromTokens(tokens, book, relative, row, col));
}

}  // namespace rubrica::formula
