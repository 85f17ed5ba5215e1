#include "formula/token_writer.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "engine/xlerror.h"
#include "formula/characters.h"
#include "formula/function_table.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/sheet_text.h"

namespace rubrica::formula {
namespace {

constexpr std::uint8_t valueOf(std::uint8_t token) {
  return static_cast<std::uint8_t>(token + kValueClass);
}
constexpr std::uint8_t arrayOf(std::uint8_t token) {
  return static_cast<std::uint8_t>(token + kArrayClass);
}

std::uint8_t referenceOrValue(std::uint8_t token, bool reference) {
  return reference ? token : valueOf(token);
}

// First byte and payload of a PtgArea.
constexpr std::size_t areaTokenSize = 9;

// The functions whose calls have a form of their own.
constexpr std::uint16_t offsetFunction = 78;
constexpr std::uint16_t todayFunction = 221;
constexpr std::uint16_t sumProductFunction = 228;

// The value that a stream extracts from digits and full stops.
double extractedNumber(std::u16string_view item) {
  std::string digits;
  digits.reserve(item.size());
  bool hasPoint = false;
  for (const char16_t c : item) {
    if (c == u'.' && hasPoint) break;
    hasPoint = hasPoint || c == u'.';
    digits += static_cast<char>(c);
  }
  double value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
  if (result.ec == std::errc::result_out_of_range) {
    const bool isLarge = digits.find_first_not_of('0') < digits.find('.');
    return isLarge ? std::numeric_limits<double>::max() : 0;
  }
  return value;
}

}  // namespace

void TokenWriter::begin(BookAccess& book, int sheetIndex, int scope) {
  _book = &book;
  _sheetIndex = sheetIndex;
  _scope = scope;
  _stream.clear();
  _ranges.clear();
}

void TokenWriter::write(std::span<const PostfixItem> items) {
  for (const PostfixItem& item : items) {
    switch (item.kind) {
      case PostfixItem::Kind::operation:
        _stream.pushByte(item.token);
        break;
      case PostfixItem::Kind::integer:
        _stream.pushAll(std::uint8_t{ptg::Int}, item.first);
        break;
      case PostfixItem::Kind::cell: {
        const bool reference = item.marked || item.text.back() == postfix::kReferenceMark;
        _stream.pushAll(referenceOrValue(ptg::Ref, reference), item.first, item.second);
        break;
      }
      case PostfixItem::Kind::area:
        _ranges.push_back(_stream.size());
        _stream.pushAll(std::uint8_t{ptg::Area}, item.first, item.second, item.third, item.fourth);
        break;
      case PostfixItem::Kind::operand:
        writeOperand(item);
        break;
      case PostfixItem::Kind::call:
        writeCall(item);
    }
  }
}

void TokenWriter::writeOperand(const PostfixItem& item) {
  if (!item.marked) return write(item.text);
  _text.assign(item.text) += postfix::kReferenceMark;
  write(_text);
}

void TokenWriter::writeCall(const PostfixItem& item) {
  if (readsBackAsItself(*item.function)) return pushCall(item.function->number, static_cast<int>(item.count));
  _text.clear();
  appendFunctionItem(_text, *item.function, item.count);
  write(_text);
}

void TokenWriter::write(std::u16string_view item) {
  // What is a text is nothing else that comes before texts.
  const bool written = writeString(item) || writeOperator(item) || writeNumber(item) || writeBoolean(item) ||
                       writeFunction(item) || writeCell(item) || writeSheetCell(item) || writeSheetRange(item) ||
                       writeRange(item) || writeRangeOfSheets(item) || writeError(item) || writeName(item);
  if (!written) throw xlerror("incorrect token in formula");
}

bool TokenWriter::writeOperator(std::u16string_view item) {
  // Nearly all that comes here is an operand, which the first character tells.
  constexpr std::u16string_view begins = u"u%+-*/^&<=>(S";
  if (item.empty() || begins.find(item[0]) == begins.npos) return false;
  if (item == postfix::kUnaryMinus) {
    _stream.pushByte(ptg::Uminus);
  } else if (item == postfix::kUnaryPlus) {
    _stream.pushByte(ptg::Uplus);
  } else if (item == postfix::kPercent || item == u"%") {
    _stream.pushByte(ptg::Percent);
  } else if (const auto token = binaryOperatorToken(item)) {
    _stream.pushByte(*token);
  } else if (item == postfix::kParentheses) {
    _stream.pushByte(ptg::Paren);
  } else if (item == u"SUM1") {
    _stream.pushByte(ptg::Attr);
    _stream.pushByte(attr::Sum);
    _stream.pushInt16(0);
  } else {
    return false;
  }
  return true;
}

bool TokenWriter::writeNumber(std::u16string_view item) {
  constexpr std::size_t longestInteger = 5;
  const auto mayStand = [](char16_t c) { return isDigit(c) || c == u'.'; };
  if (item.empty() || !mayStand(item[0]) || !std::all_of(item.begin(), item.end(), mayStand)) return false;
  if (item.size() <= longestInteger && std::all_of(item.begin(), item.end(), isDigit)) {
    unsigned value = 0;
    for (const char16_t digit : item) value = value * 10 + (digit - u'0');
    if (value <= std::numeric_limits<std::uint16_t>::max()) {
      _stream.pushByte(ptg::Int);
      _stream.pushInt16(static_cast<std::uint16_t>(value));
      return true;
    }
  }
  _stream.pushByte(ptg::Num);
  _stream.pushDouble(extractedNumber(item));
  return true;
}

bool TokenWriter::writeBoolean(std::u16string_view item) {
  const bool isTrue = item.size() == postfix::kTrue.size() && item == postfix::kTrue;
  if (!isTrue && (item.size() != postfix::kFalse.size() || item != postfix::kFalse)) return false;
  _stream.pushByte(ptg::Bool);
  _stream.pushByte(isTrue ? 1 : 0);
  return true;
}

bool TokenWriter::writeFunction(std::u16string_view item) {
  const auto function = functionItem(item);
  if (!function) return false;
  pushCall(function->number, function->count);
  return true;
}

void TokenWriter::pushCall(std::uint16_t number, int count) {
  // A call over nothing but plain ranges keeps their class; as soon as it computes with them they become arrays.
  const bool computes = _stream.size() > areaTokenSize * static_cast<std::size_t>(count);
  if (number == todayFunction) {
    _stream.pushByte(ptg::Attr);
    _stream.pushByte(attr::Volatile);
    _stream.pushInt16(0);
    _stream.pushByte(valueOf(ptg::Func));
  } else {
    if (number == sumProductFunction && computes) {
      for (const std::size_t position : _ranges) _stream[position] = arrayOf(ptg::Area);
    }
    _stream.pushAll(referenceOrValue(ptg::FuncVar, number == offsetFunction), static_cast<std::uint8_t>(count));
  }
  _stream.pushInt16(number);
  _ranges.clear();
}

void TokenWriter::pushCell(const CellAddress& address) {
  _stream.pushInt16(static_cast<std::uint16_t>(address.row));
  _stream.pushInt16(columnWord(address));
}

void TokenWriter::pushRange(const RangeText& range) {
  _stream.pushInt16(static_cast<std::uint16_t>(range.first.address.row));
  _stream.pushInt16(static_cast<std::uint16_t>(range.last.address.row));
  _stream.pushInt16(columnWord(range.first.address));
  _stream.pushInt16(columnWord(range.last.address));
}

bool TokenWriter::writeCell(std::u16string_view item) {
  const auto cell = parseCell(item);
  if (!cell) return false;
  _stream.pushByte(referenceOrValue(ptg::Ref, cell->referenceClass));
  pushCell(cell->address);
  return true;
}

std::optional<std::uint16_t> TokenWriter::sheetOf(std::u16string_view sheetText) {
  return _book->externSheetIndex(unquotedSheetName(sheetText));
}

bool TokenWriter::writeSheetCell(std::u16string_view item) {
  const auto halves = cutAt(item, u'!');
  const auto cell = halves ? parseCell(halves->second) : std::nullopt;
  const auto sheet = cell ? sheetOf(halves->first) : std::nullopt;
  if (!sheet) return false;
  _stream.pushByte(referenceOrValue(ptg::Ref3d, cell->referenceClass));
  _stream.pushInt16(*sheet);
  pushCell(cell->address);
  return true;
}

bool TokenWriter::writeSheetRange(std::u16string_view item) {
  const auto halves = cutAt(item, u'!');
  const auto range = halves ? parseRange(halves->second) : std::nullopt;
  const auto sheet = range ? sheetOf(halves->first) : std::nullopt;
  if (!sheet) return false;
  _stream.pushByte(referenceOrValue(ptg::Area3d, range->last.referenceClass));
  _stream.pushInt16(*sheet);
  pushRange(*range);
  return true;
}

bool TokenWriter::writeRange(std::u16string_view item) {
  const auto range = parseRange(item);
  if (!range) return false;
  _ranges.push_back(_stream.size());
  _stream.pushByte(ptg::Area);
  pushRange(*range);
  return true;
}

bool TokenWriter::writeString(std::u16string_view item) {
  constexpr std::size_t longestString = 255;
  constexpr std::uint8_t wideCharacters = 1;
  if (item.size() < 2 || item.front() != u'"' || item.back() != u'"') return false;
  std::u16string& text = _text;
  text.clear();
  const std::u16string_view inner = item.substr(1, item.size() - 2);
  for (std::size_t i = 0; i < inner.size(); ++i) {
    text += inner[i];
    if (inner.substr(i, 2) == u"\"\"") ++i;
  }
  if (text.size() > longestString) throw xlerror("ShortXLUnicodeString: string is too long");
  _stream.pushByte(ptg::Str);
  _stream.pushByte(static_cast<std::uint8_t>(text.size()));
  _stream.pushByte(wideCharacters);
  for (const char16_t c : text) _stream.pushInt16(c);
  return true;
}

bool TokenWriter::writeRangeOfSheets(std::u16string_view item) {
  const auto halves = cutAt(item, u':');
  const auto left = halves ? cutAt(halves->first, u'!') : std::nullopt;
  const auto right = left ? cutAt(halves->second, u'!') : std::nullopt;
  if (!right) return false;
  const auto first = parseCell(left->second);
  const auto last = first ? parseCell(right->second) : std::nullopt;
  const auto firstSheet = last ? sheetOf(left->first) : std::nullopt;
  const auto lastSheet = firstSheet ? sheetOf(right->first) : std::nullopt;
  if (!lastSheet) return false;
  constexpr std::uint16_t wrappedSize = 7 + 7 + 1;
  _stream.pushByte(ptg::MemFunc);
  _stream.pushInt16(wrappedSize);
  _stream.pushByte(ptg::Ref3d);
  _stream.pushInt16(*firstSheet);
  pushCell(first->address);
  _stream.pushByte(ptg::Ref3d);
  _stream.pushInt16(*lastSheet);
  pushCell(last->address);
  _stream.pushByte(ptg::Range);
  return true;
}

bool TokenWriter::writeError(std::u16string_view item) {
  const auto code = errorCode(item);
  if (!code) return false;
  _stream.pushByte(ptg::Err);
  _stream.pushByte(*code);
  return true;
}

bool TokenWriter::writeName(std::u16string_view item) {
  const auto index = _book->findName(item, _sheetIndex, _scope);
  if (!index) return false;
  _stream.pushByte(ptg::Name);
  _stream.pushInt32(*index + 1);
  return true;
}

}  // namespace rubrica::formula
