#include "formula/print.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "formula/byte_stream.h"
#include "formula/characters.h"
#include "formula/function_table.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/token_walk.h"

namespace rubrica::formula {
namespace {

constexpr std::u16string_view unknownItem = u"?";

// Writes the postfix items of one token after the other.
class ItemPrinter {
 public:
  ItemPrinter(const BookAccess& book, bool relative, int row, int col)
      : _book(book), _relative(relative), _row(row), _col(col) {}

  // Takes a whole token from its stream. Tokens that add nothing leave the text as it was.
  void print(ByteStream& token);

  std::u16string release() { return std::move(_text); }

 private:
  void printPlain(std::uint8_t first, ByteStream& token);
  void printOperand(std::uint8_t base, ByteStream& token);
  void printString(ByteStream& token);
  void printName(ByteStream& token);
  void printFixedCall(ByteStream& token);
  void printVariableCall(ByteStream& token);
  void printCall(const FunctionRow* function, unsigned count);
  void printCell(bool isOffset, ByteStream& token);
  void printArea(bool isOffset, ByteStream& token);
  void printSheet(std::uint8_t base, ByteStream& token);
  void printAddress(bool isOffset, std::uint16_t row, std::uint16_t columnWord);

  const BookAccess& _book;
  bool _relative;
  int _row;
  int _col;
  std::u16string _text;
};

void ItemPrinter::print(ByteStream& token) {
  const std::size_t before = _text.size();
  if (before > 0) _text += u' ';
  const std::size_t begin = _text.size();
  const std::uint8_t first = token.popByte();
  if (first < ptg::Array) {
    printPlain(first, token);
  } else if (first == ptg::Name + kArrayClass) {
    _text += unknownItem;
  } else if (first == ptg::RefErr) {
    _text += kRefErrorText;
  } else {
    printOperand(baseToken(first), token);
  }
  if (_text.size() == begin) _text.resize(before);
}

void ItemPrinter::printPlain(std::uint8_t first, ByteStream& token) {
  if (first >= ptg::Add && first <= ptg::Ne) {
    _text += binaryOperatorText(first);
    return;
  }
  switch (first) {
    case ptg::Range:
      _text += postfix::kRange;
      return;
    case ptg::Uplus:
      _text += postfix::kUnaryPlus;
      return;
    case ptg::Uminus:
      _text += postfix::kUnaryMinus;
      return;
    case ptg::Percent:
      _text += postfix::kPercent;
      return;
    case ptg::Paren:
      _text += postfix::kParentheses;
      return;
    case ptg::MissArg:
      _text += u"MISS";
      return;
    case ptg::Str:
      return printString(token);
    case ptg::Attr:
      if (token.popByte() == attr::Sum) printCall(findFunction(u"SUM"), 1);
      return;
    case ptg::Err:
      _text += errorText(token.popByte()).value_or(unknownItem);
      return;
    case ptg::Bool:
      _text += token.popByte() != 0 ? postfix::kTrue : postfix::kFalse;
      return;
    case ptg::Int:
      return appendDecimal(_text, token.popInt16());
    case ptg::Num:
      _text += numberText(token.popDouble());
      return;
    default:
      _text += unknownItem;
  }
}

void ItemPrinter::printOperand(std::uint8_t base, ByteStream& token) {
  switch (base) {
    case ptg::Func:
      return printFixedCall(token);
    case ptg::FuncVar:
      return printVariableCall(token);
    case ptg::Name:
      return printName(token);
    case ptg::Ref:
    case ptg::RefN:
      return printCell(base == ptg::RefN, token);
    case ptg::Area:
    case ptg::AreaN:
      return printArea(base == ptg::AreaN, token);
    case ptg::MemErr:
    case ptg::RefErr:
    case ptg::AreaErr:
    case ptg::RefErr3d:
    case ptg::AreaErr3d:
      _text += u"ERR";
      return;
    case ptg::MemNoMem:
      _text += u"NOMEM";
      return;
    case ptg::MemFunc:
      return;
    case ptg::Ref3d:
    case ptg::Area3d:
      return printSheet(base, token);
    default:
      _text += unknownItem;
  }
}

void ItemPrinter::printString(ByteStream& token) {
  const std::size_t count = token.popByte();
  const bool wide = (token.popByte() & 1) != 0;
  _text += u'"';
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t c = wide ? token.popInt16() : token.popByte();
    if (c == u'"') _text += c;
    _text += c;
  }
  _text += u'"';
}

void ItemPrinter::printName(ByteStream& token) {
  const std::uint32_t index = token.popInt32();
  const auto text = index == 0 ? std::nullopt : _book.nameText(index - 1);
  _text += text ? std::u16string_view(*text) : unknownItem;
}

void ItemPrinter::printFixedCall(ByteStream& token) {
  const FunctionRow* const function = findFunction(token.popInt16());
  printCall(function, function ? function->fixedCount : 0);
}

void ItemPrinter::printVariableCall(ByteStream& token) {
  constexpr std::uint16_t firstNegative = 0x8000;
  const std::uint8_t count = token.popByte();
  const std::uint16_t number = token.popInt16();
  if (number >= firstNegative) {
    _text += unknownItem;
  } else {
    printCall(findFunction(number), count);
  }
}

void ItemPrinter::printCall(const FunctionRow* function, unsigned count) {
  _text += function ? function->name : unknownItem;
  appendDecimal(_text, count);
  _text += postfix::kFunctionEnd;
}

void ItemPrinter::printSheet(std::uint8_t base, ByteStream& token) {
  const std::u16string part = _book.sheetPart(token.popInt16());
  _text += part;
  if (part == kRefErrorText) return;
  _text += u'!';
  base == ptg::Ref3d ? printCell(false, token) : printArea(false, token);
}

void ItemPrinter::printCell(bool isOffset, ByteStream& token) {
  const std::uint16_t row = token.popInt16();
  printAddress(isOffset, row, token.popInt16());
}

void ItemPrinter::printArea(bool isOffset, ByteStream& token) {
  const std::uint16_t firstRow = token.popInt16();
  const std::uint16_t lastRow = token.popInt16();
  const std::uint16_t firstColumn = token.popInt16();
  const std::uint16_t lastColumn = token.popInt16();
  printAddress(isOffset, firstRow, firstColumn);
  _text += u':';
  printAddress(isOffset, lastRow, lastColumn);
}

void ItemPrinter::printAddress(bool isOffset, std::uint16_t row, std::uint16_t columnWord) {
  CellAddress address = addressFromWords(row, columnWord);
  if (isOffset && _relative) {
    if (address.rowRelative) address.row = (address.row + _row) & 0xFFFF;
    if (address.colRelative) address.col = (address.col + _col) & 0xFF;
  }
  _text += addressText(address);
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
  while (!stream.empty()) {
    block.takeFrom(stream);
    printer.print(block.bytes());
  }
  return printer.release();
}

std::u16string printFormula(std::span<const std::uint8_t> tokens, const BookAccess& book, bool relative, int row,
                            int col) {
  return infixFromPostfix(postfixFromTokens(tokens, book, relative, row, col));
}

}  // namespace rubrica::formula
