#include "formula/biff5_tokens.h"

#include <algorithm>
#include <array>

#include "formula/byte_stream.h"
#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

constexpr std::int8_t inconvertible = -1;

// Payload bytes in BIFF5 of every base token whose length is fixed and which has a BIFF8 form.
constexpr auto payloadLengths = [] {
  std::array<std::int8_t, 0x40> length{};
  for (std::int8_t& value : length) value = inconvertible;
  for (std::size_t plain = ptg::Add; plain <= ptg::MissArg; ++plain) length[plain] = 0;
  length[ptg::Exp] = length[ptg::Tbl] = 4;
  length[ptg::Err] = length[ptg::Bool] = 1;
  length[ptg::Int] = 2;
  length[ptg::Num] = 8;
  length[ptg::Func] = 2;
  length[ptg::FuncVar] = 3;
  length[ptg::Name] = 14;
  length[ptg::Ref] = length[ptg::RefErr] = length[ptg::RefN] = 3;
  length[ptg::Area] = length[ptg::AreaErr] = length[ptg::AreaN] = 6;
  length[ptg::MemArea] = length[ptg::MemErr] = length[ptg::MemNoMem] = 6;
  length[ptg::MemFunc] = 2;
  length[ptg::NameX] = 24;
  length[ptg::Ref3d] = length[ptg::RefErr3d] = 17;
  length[ptg::Area3d] = length[ptg::AreaErr3d] = 20;
  return length;
}();

// Bits of the row word: the row, or a signed offset, and the flags that BIFF8 keeps in the column word.
constexpr std::uint16_t rowBits = 0x3FFF;
constexpr std::uint16_t rowSignBit = 0x2000;
constexpr std::uint16_t flagBits = kColumnRelative | kRowRelative;

// Rewrites one formula. Failure is a state: once something doesn't convert, the result is nothing.
class Biff5Converter {
 public:
  Biff5Converter(std::span<const std::uint8_t> tokens, Biff5Access& book) : _source(tokens), _book(book) {}

  std::optional<std::vector<std::uint8_t>> convert();

 private:
  // Where a token began there and begins here.
  struct Boundary {
    std::size_t source;
    std::size_t target;
  };
  // A 16-bit distance, standing at `field` in the result, between two places of the source.
  struct Distance {
    std::size_t field;
    std::size_t from;
    std::size_t to;
    int more;  // what the field's value is more than the distance
  };

  std::size_t left() const { return _source.size() - _position; }
  bool convertToken();
  bool convertString();
  bool convertAttr();
  bool convertJumpTable();
  void convertPayload(std::uint8_t first);
  void convertMem(std::uint8_t first);
  void convertReference(bool isOffset);
  void convertArea(bool isOffset);
  void convertSheet(std::uint8_t first);
  void convertExternName(std::uint8_t first);
  bool recountDistances();
  std::optional<std::size_t> targetOf(std::size_t source) const;

  std::uint8_t takeByte() { return _source[_position++]; }
  std::uint16_t takeInt16();
  void copy(std::size_t count);
  void pushZeros(std::size_t count);
  void pushRow(std::uint16_t rowWord, bool isOffset);
  void pushColumn(std::uint8_t column, std::uint16_t rowWord);

  std::span<const std::uint8_t> _source;
  std::size_t _position = 0;
  Biff5Access& _book;
  ByteStream _target;
  std::vector<Boundary> _boundaries;  // ascending
  std::vector<Distance> _distances;
  bool _failed = false;
};

std::uint16_t Biff5Converter::takeInt16() {
  const std::uint16_t low = takeByte();
  return static_cast<std::uint16_t>(low | takeByte() << 8);
}

void Biff5Converter::copy(std::size_t count) {
  for (; count > 0; --count) _target.pushByte(takeByte());
}

void Biff5Converter::pushZeros(std::size_t count) {
  for (; count > 0; --count) _target.pushByte(0);
}

std::optional<std::vector<std::uint8_t>> Biff5Converter::convert() {
  while (left() > 0 && !_failed) {
    _boundaries.push_back({_position, _target.size()});
    if (!convertToken()) return std::nullopt;
  }
  _boundaries.push_back({_position, _target.size()});
  if (_failed || !recountDistances()) return std::nullopt;
  return std::vector<std::uint8_t>(_target.bytes().begin(), _target.bytes().end());
}

bool Biff5Converter::convertToken() {
  const std::uint8_t first = takeByte();
  if (first == ptg::Str) return convertString();
  if (first == ptg::Attr) return convertAttr();
  const std::int8_t payload = first < kFirstByteEnd ? payloadLengths[baseToken(first)] : inconvertible;
  if (payload == inconvertible || left() < static_cast<std::size_t>(payload)) return false;
  convertPayload(first);
  return true;
}

void Biff5Converter::convertPayload(std::uint8_t first) {
  const std::uint8_t base = baseToken(first);
  switch (base) {
    case ptg::Name:
      _target.pushByte(first);
      _target.pushInt32(takeInt16());
      _position += 12;
      return;
    case ptg::Ref:
    case ptg::RefN:
      _target.pushByte(first);
      return convertReference(base == ptg::RefN);
    case ptg::Area:
    case ptg::AreaN:
      _target.pushByte(first);
      return convertArea(base == ptg::AreaN);
    case ptg::RefErr:
      _target.pushByte(first);
      _position += 3;
      return pushZeros(4);
    case ptg::AreaErr:
      _target.pushByte(first);
      _position += 6;
      return pushZeros(8);
    case ptg::MemArea:
    case ptg::MemErr:
    case ptg::MemNoMem:
    case ptg::MemFunc:
      return convertMem(first);
    case ptg::NameX:
      return convertExternName(first);
    case ptg::Ref3d:
    case ptg::Area3d:
    case ptg::RefErr3d:
    case ptg::AreaErr3d:
      return convertSheet(first);
    default:
      _target.pushByte(first);
      return copy(static_cast<std::size_t>(payloadLengths[base]));
  }
}

// The rectangles of a PtgMemArea stand behind the tokens; the same subexpression works as PtgMemFunc, without them.
void Biff5Converter::convertMem(std::uint8_t first) {
  const std::uint8_t base = baseToken(first);
  if (base == ptg::MemArea) {
    _target.pushByte(static_cast<std::uint8_t>(first - ptg::MemArea + ptg::MemFunc));
    _position += 4;
  } else {
    _target.pushByte(first);
    if (base != ptg::MemFunc) copy(4);
  }
  const std::uint16_t size = takeInt16();
  _distances.push_back({_target.size(), _position, _position + size, 0});
  _target.pushInt16(0);
}

bool Biff5Converter::convertString() {
  constexpr std::uint8_t wideCharacters = 1;
  if (left() < 1) return false;
  const std::size_t length = takeByte();
  if (left() < length) return false;
  const auto bytes = _source.subspan(_position, length);
  const std::u16string text = _book.text({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (text.size() > 255) return false;
  _position += length;
  _target.pushByte(ptg::Str);
  _target.pushByte(static_cast<std::uint8_t>(text.size()));
  _target.pushByte(wideCharacters);
  for (const char16_t c : text) _target.pushInt16(c);
  return true;
}

// Every option has two bytes of data behind it; "choose" has its jump table behind those.
bool Biff5Converter::convertAttr() {
  if (left() < 3) return false;
  const std::uint8_t option = takeByte();
  _target.pushByte(ptg::Attr);
  _target.pushByte(option);
  if ((option & attr::Choose) != 0) return convertJumpTable();
  if ((option & (attr::If | attr::Goto)) == 0) {
    copy(2);
    return true;
  }
  // "goto" counts the bytes to skip less one.
  const int less = (option & attr::Goto) != 0 ? 1 : 0;
  const std::size_t distance = takeInt16();
  _distances.push_back({_target.size(), _position, _position + distance + static_cast<std::size_t>(less), -less});
  _target.pushInt16(0);
  return true;
}

// One distance more than there are choices, each from the beginning of the table, which moves with the token before it.
bool Biff5Converter::convertJumpTable() {
  const std::uint16_t choices = takeInt16();
  const std::size_t tableSize = 2 * (static_cast<std::size_t>(choices) + 1);
  if (left() < tableSize) return false;
  _target.pushInt16(choices);
  const std::size_t table = _position;
  for (std::size_t i = 0; i <= choices; ++i) {
    const std::size_t place = table + takeInt16();
    if (place < table + tableSize) return false;
    _distances.push_back({_target.size(), table + tableSize, place, static_cast<int>(tableSize)});
    _target.pushInt16(0);
  }
  return true;
}

void Biff5Converter::pushRow(std::uint16_t rowWord, bool isOffset) {
  const bool negative = isOffset && (rowWord & kRowRelative) != 0 && (rowWord & rowSignBit) != 0;
  const unsigned row = rowWord & rowBits;
  _target.pushInt16(static_cast<std::uint16_t>(negative ? row | static_cast<unsigned>(~rowBits & 0xFFFF) : row));
}

void Biff5Converter::pushColumn(std::uint8_t column, std::uint16_t rowWord) {
  _target.pushInt16(static_cast<std::uint16_t>(column | (rowWord & flagBits)));
}

void Biff5Converter::convertReference(bool isOffset) {
  const std::uint16_t rowWord = takeInt16();
  pushRow(rowWord, isOffset);
  pushColumn(takeByte(), rowWord);
}

void Biff5Converter::convertArea(bool isOffset) {
  const std::uint16_t firstRow = takeInt16();
  const std::uint16_t lastRow = takeInt16();
  pushRow(firstRow, isOffset);
  pushRow(lastRow, isOffset);
  pushColumn(takeByte(), firstRow);
  pushColumn(takeByte(), lastRow);
}

void Biff5Converter::convertSheet(std::uint8_t first) {
  const std::uint8_t base = baseToken(first);
  const bool isCell = base == ptg::Ref3d || base == ptg::RefErr3d;
  const bool isError = base == ptg::RefErr3d || base == ptg::AreaErr3d;
  const auto externIndex = static_cast<std::int16_t>(takeInt16());
  _position += 8;
  const std::uint16_t firstSheet = takeInt16();
  const std::uint16_t lastSheet = takeInt16();
  const auto index = _book.externSheetIndex(externIndex, firstSheet, lastSheet);
  if (isError) {
    _position += isCell ? 3 : 6;
    const std::uint8_t withoutSheet = isCell ? ptg::RefErr : ptg::AreaErr;
    _target.pushByte(index ? first : static_cast<std::uint8_t>(first - base + withoutSheet));
    if (index) _target.pushInt16(*index);
    return pushZeros(isCell ? 4 : 8);
  }
  if (!index) {
    _failed = true;
    return;
  }
  _target.pushByte(first);
  _target.pushInt16(*index);
  isCell ? convertReference(false) : convertArea(false);
}

void Biff5Converter::convertExternName(std::uint8_t first) {
  const auto externIndex = static_cast<std::int16_t>(takeInt16());
  _position += 8;
  const std::uint16_t nameIndex = takeInt16();
  _position += 12;
  const auto name = _book.externName(externIndex, nameIndex);
  if (!name) {
    _failed = true;
    return;
  }
  _target.pushByte(first);
  _target.pushInt16(name->externSheetIndex);
  _target.pushInt16(name->nameIndex);
  _target.pushInt16(0);
}

std::optional<std::size_t> Biff5Converter::targetOf(std::size_t source) const {
  const auto found =
      std::lower_bound(_boundaries.begin(), _boundaries.end(), source,
                       [](const Boundary& boundary, std::size_t place) { return boundary.source < place; });
  if (found == _boundaries.end() || found->source != source) return std::nullopt;
  return found->target;
}

bool Biff5Converter::recountDistances() {
  constexpr std::int64_t longest = 0xFFFF;
  for (const Distance& distance : _distances) {
    const auto from = targetOf(distance.from);
    const auto to = targetOf(distance.to);
    if (!from || !to) return false;
    const auto value = static_cast<std::int64_t>(*to - *from) + distance.more;
    if (value < 0 || value > longest) return false;
    _target[distance.field] = static_cast<std::uint8_t>(value);
    _target[distance.field + 1] = static_cast<std::uint8_t>(value >> 8);
  }
  return true;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> biff8FromBiff5(std::span<const std::uint8_t> tokens, Biff5Access& book) {
  return Biff5Converter(tokens, book).convert();
}

}  // namespace rubrica::formula
